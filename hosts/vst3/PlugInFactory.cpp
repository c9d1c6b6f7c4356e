// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/PlugInFactory.hpp"

#include <new>

#include "hosts/vst3/PlugInComponent.hpp"

namespace quillo {

using namespace Steinberg;

PlugInFactory::PlugInFactory(const IPtr<IPluginFactory3>& wrappers) : wrappers_(wrappers) {}

tresult PlugInFactory::queryInterface(const TUID id, void** object) {
    for (const auto& own : {IPluginFactory3::iid, IPluginFactory2::iid, IPluginFactory::iid, FUnknown::iid}) {
        if (FUnknownPrivate::iidEqual(id, own)) {
            addRef();
            *object = this;
            return kResultOk;
        }
    }
    *object = nullptr;
    return kNoInterface;
}

uint32 PlugInFactory::addRef() {
    return ++references_;
}

uint32 PlugInFactory::release() {
    const auto left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}

tresult PlugInFactory::createInstance(FIDString classId, FIDString id, void** object) {
    if (classId == nullptr || id == nullptr || object == nullptr) {
        return kInvalidArgument;
    }
    *object = nullptr;
    try {
        return make(classId, id, object);
    } catch (const std::bad_alloc&) {
        return kOutOfMemory;
    } catch (...) {
        return kInternalError;
    }
}

tresult PlugInFactory::make(FIDString classId, FIDString id, void** object) {
    void* found = nullptr;
    if (const auto result = wrappers_->createInstance(classId, FUnknown::iid, &found); result != kResultOk) {
        return result;
    }
    const auto made = owned(static_cast<FUnknown*>(found));
    const auto component = PlugInComponent::around(*made);
    return component ? component->queryInterface(id, object) : made->queryInterface(id, object);
}

tresult PlugInFactory::getFactoryInfo(PFactoryInfo* info) {
    return wrappers_->getFactoryInfo(info);
}

int32 PlugInFactory::countClasses() {
    return wrappers_->countClasses();
}

tresult PlugInFactory::getClassInfo(int32 index, PClassInfo* info) {
    return wrappers_->getClassInfo(index, info);
}

tresult PlugInFactory::getClassInfo2(int32 index, PClassInfo2* info) {
    return wrappers_->getClassInfo2(index, info);
}

tresult PlugInFactory::getClassInfoUnicode(int32 index, PClassInfoW* info) {
    return wrappers_->getClassInfoUnicode(index, info);
}

tresult PlugInFactory::setHostContext(FUnknown* context) {
    return wrappers_->setHostContext(context);
}

}  // namespace quillo
