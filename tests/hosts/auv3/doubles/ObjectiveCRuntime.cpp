// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/doubles/ObjectiveCRuntime.hpp"

#include <Block.h>
#include <Block_private.h>
#include <unwind.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillo::test {
namespace {

struct Class;

struct Object {
    Class* isa;
};

using Implementation = Object* (*)(Object * self, void* selector);

struct Selector {
    const char* name;
    const char* types;
};

struct Method {
    const char* name;
    const char* types;
    Implementation implementation;
};

struct MethodList {
    MethodList* next;
    int count;
    Method methods[1];
};

struct FieldList {
    int count;
};

/// What the compiler writes for a class; the runtime puts in what needs the superclass.
struct Class {
    Class* isa;
    Class* superclass;  ///< at first its name
    const char* name;
    long version;
    long flags;
    long size;  ///< at first that of the class's own fields, below zero
    FieldList* fields;
    MethodList* methods;
    void* unused[5];
    long format;
    int** fieldOffsets;  ///< at first without the superclass's fields
};

struct Category {
    const char* name;
    const char* className;
    MethodList* instanceMethods;
    MethodList* classMethods;
};

/// What one source brings: classes, then categories, then lists of constant objects.
struct Symbols {
    long selectorCount;
    Selector* selectors;
    unsigned short classCount;
    unsigned short categoryCount;
    void* definitions[1];
};

struct Module {
    long version;
    long size;
    const char* name;
    Symbols* symbols;
};

struct Super {
    Object* self;
    Class* superclass;
};

/// Stands in front of each object.
struct alignas(std::max_align_t) References {
    std::atomic<long> count{1};
};

constexpr long isMetaclass = 2;
constexpr long isResolved = 0x100;

std::atomic<std::size_t> living{0};

std::vector<Module*>& modules() {
    static auto& all = *new std::vector<Module*>();
    return all;
}

std::map<std::string, Class*, std::less<>>& classes() {
    static auto& all = *new std::map<std::string, Class*, std::less<>>();
    return all;
}

template <class Visit>
void forEachMethod(const MethodList* list, Visit visit) {
    for (; list != nullptr; list = list->next) {
        for (int index = 0; index < list->count; ++index) {
            visit(list->methods[index]);
        }
    }
}

long aligned(long size) {
    constexpr long alignment = alignof(std::max_align_t);
    return (size + alignment - 1) / alignment * alignment;
}

void resolveSuperclass(Class& itsClass) {
    if ((itsClass.flags & isResolved) != 0) {
        return;
    }
    itsClass.flags |= isResolved;
    long inherited = 0;
    if (itsClass.superclass == nullptr) {
        itsClass.isa->superclass = &itsClass;
    } else {
        auto* superclass = classes().at(reinterpret_cast<const char*>(itsClass.superclass));
        resolveSuperclass(*superclass);
        itsClass.superclass = superclass;
        itsClass.isa->superclass = superclass->isa;
        inherited = aligned(superclass->size);
    }
    itsClass.size = inherited - itsClass.size;
    for (int field = 0; itsClass.fields != nullptr && field < itsClass.fields->count; ++field) {
        *itsClass.fieldOffsets[field] += static_cast<int>(inherited);
    }
}

/// A category's methods go before those of the class.
void addMethods(Class& itsClass, MethodList* methods) {
    if (methods == nullptr) {
        return;
    }
    auto* last = methods;
    while (last->next != nullptr) {
        last = last->next;
    }
    last->next = itsClass.methods;
    itsClass.methods = methods;
}

/// The compiler also writes a category of no class, to which protocols are tied.
void addCategory(const Category& category) {
    const auto found = classes().find(category.className);
    if (found != classes().end()) {
        addMethods(*found->second, category.instanceMethods);
        addMethods(*found->second->isa, category.classMethods);
    }
}

/// A list of constants begins with the name of their class and ends with null.
void resolveConstants(void** lists) {
    for (; lists != nullptr && *lists != nullptr; ++lists) {
        auto** entry = static_cast<void**>(*lists);
        auto* itsClass = classes().at(static_cast<const char*>(*entry));
        for (++entry; *entry != nullptr; ++entry) {
            static_cast<Object*>(*entry)->isa = itsClass;
        }
    }
}

void resolveModules() {
    for (const auto* module : modules()) {
        for (int index = 0; index < module->symbols->classCount; ++index) {
            auto* itsClass = static_cast<Class*>(module->symbols->definitions[index]);
            classes().emplace(itsClass->name, itsClass);
        }
    }
    for (const auto& [name, itsClass] : classes()) {
        resolveSuperclass(*itsClass);
    }
    for (const auto* module : modules()) {
        void** definition = module->symbols->definitions + module->symbols->classCount;
        for (int index = 0; index < module->symbols->categoryCount; ++index) {
            addCategory(*static_cast<Category*>(*definition++));
        }
        resolveConstants(static_cast<void**>(*definition));
    }
}

Implementation findMethod(const Class* itsClass, std::string_view name) {
    for (; itsClass != nullptr; itsClass = itsClass->superclass) {
        Implementation found = nullptr;
        forEachMethod(itsClass->methods, [&](const Method& method) {
            if (found == nullptr && name == method.name) {
                found = method.implementation;
            }
        });
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

Implementation method(const Class* itsClass, const Selector* selector) {
    static std::once_flag resolved;
    std::call_once(resolved, resolveModules);
    const auto found = findMethod(itsClass, selector->name);
    if (found == nullptr) {
        std::fprintf(stderr, "%s has no method %s\n", itsClass->name, selector->name);
        std::abort();
    }
    return found;
}

Object* answerNothing(Object* /*self*/, void* /*selector*/) {
    return nullptr;
}

References& referencesOf(Object* object) {
    return reinterpret_cast<References*>(object)[-1];
}

bool isBlock(const Object* object) {
    const void* const itsClass = object->isa;
    return itsClass == &_NSConcreteStackBlock || itsClass == &_NSConcreteGlobalBlock ||
           itsClass == &_NSConcreteMallocBlock;
}

/// The class of a block does not always tell; its flags do.
bool isBlockOnStack(const Object* object) {
    return isBlock(object) &&
           (reinterpret_cast<const Block_layout*>(object)->flags & (BLOCK_NEEDS_FREE | BLOCK_IS_GLOBAL)) == 0;
}

/// Classes and constant strings are never freed.
bool isCounted(const Object* object) {
    return (object->isa->flags & isMetaclass) == 0 &&
           std::string_view(object->isa->name) != "NSConstantString";
}

/// Runs what the compiler has written for the fields of C++ types of this class alone.
void runOwn(const Class& itsClass, Object* object, std::string_view name) {
    forEachMethod(itsClass.methods, [&](const Method& method) {
        if (name == method.name) {
            method.implementation(object, nullptr);
        }
    });
}

void makeFields(const Class* itsClass, Object* object) {
    if (itsClass != nullptr) {
        makeFields(itsClass->superclass, object);
        runOwn(*itsClass, object, ".cxx_construct");
    }
}

void destroy(Object* object) {
    for (const auto* itsClass = object->isa; itsClass != nullptr; itsClass = itsClass->superclass) {
        runOwn(*itsClass, object, ".cxx_destruct");
    }
    --living;
    std::free(&referencesOf(object));
}

/// The objects that the pools of this thread will release.
std::vector<Object*>& pooled() {
    thread_local std::vector<Object*> objects;
    return objects;
}

std::mutex& propertyMutex() {
    static std::mutex mutex;
    return mutex;
}

Object*& propertyOf(Object* self, std::ptrdiff_t offset) {
    return *reinterpret_cast<Object**>(reinterpret_cast<char*>(self) + offset);
}

}  // namespace

std::size_t livingObjects() {
    return living;
}

/// The count begins above the lowest bit, which says that the block is being freed.
std::size_t blockReferences(const void* block) {
    return static_cast<std::size_t>(static_cast<const Block_layout*>(block)->flags & BLOCK_REFCOUNT_MASK) / 2;
}

}  // namespace quillo::test

// The functions that the compiler calls.
extern "C" {

using namespace quillo::test;

_Unwind_Reason_Code unwindThroughCPlusPlus(int version, _Unwind_Action actions,
                                           _Unwind_Exception_Class exceptionClass,
                                           _Unwind_Exception* exception,
                                           _Unwind_Context* context) asm("__gxx_personality_v0");

/// Only exceptions of C++ are thrown here.
_Unwind_Reason_Code unwind(int version, _Unwind_Action actions, _Unwind_Exception_Class exceptionClass,
                           _Unwind_Exception* exception,
                           _Unwind_Context* context) asm("__gnu_objc_personality_v0");
_Unwind_Reason_Code unwind(int version, _Unwind_Action actions, _Unwind_Exception_Class exceptionClass,
                           _Unwind_Exception* exception, _Unwind_Context* context) {
    return unwindThroughCPlusPlus(version, actions, exceptionClass, exception, context);
}

/// Called for each source before the program starts.
void load(Module* module) asm("__objc_exec_class");
void load(Module* module) {
    modules().push_back(module);
}

Implementation objc_msg_lookup(const Object* self, const Selector* selector) {
    return self == nullptr ? answerNothing : method(self->isa, selector);
}

Implementation objc_msg_lookup_stret(const Object* self, const Selector* selector) {
    return objc_msg_lookup(self, selector);
}

Implementation objc_msg_lookup_super(const Super* super, const Selector* selector) {
    return method(super->superclass, selector);
}

void* quillo_makeObject(void* itsClass) {
    auto* made = static_cast<Class*>(itsClass);
    void* room = std::calloc(1, sizeof(References) + static_cast<std::size_t>(made->size));
    auto* references = new (room) References;
    auto* object = reinterpret_cast<Object*>(references + 1);
    object->isa = made;
    makeFields(made, object);
    ++living;
    return object;
}

bool quillo_isKindOf(const void* object, const void* itsClass) {
    const auto* candidate = static_cast<const Object*>(object)->isa;
    while (candidate != nullptr && candidate != itsClass) {
        candidate = candidate->superclass;
    }
    return candidate != nullptr;
}

/// A block on the stack stays there until somebody copies it.
Object* objc_retain(Object* object) {
    if (object == nullptr || isBlockOnStack(object)) {
        return object;
    }
    if (isBlock(object)) {
        return static_cast<Object*>(_Block_copy(object));
    }
    if (isCounted(object)) {
        ++referencesOf(object).count;
    }
    return object;
}

void objc_release(Object* object) {
    if (object == nullptr || isBlockOnStack(object)) {
        return;
    }
    if (isBlock(object)) {
        _Block_release(object);
    } else if (isCounted(object) && --referencesOf(object).count == 0) {
        destroy(object);
    }
}

Object* objc_retainBlock(Object* block) {
    return static_cast<Object*>(_Block_copy(block));
}

void objc_storeStrong(Object** place, Object* object) {
    objc_release(std::exchange(*place, objc_retain(object)));
}

Object* objc_autorelease(Object* object) {
    if (object != nullptr) {
        pooled().push_back(object);
    }
    return object;
}

Object* objc_retainAutorelease(Object* object) {
    return objc_autorelease(objc_retain(object));
}

Object* objc_autoreleaseReturnValue(Object* object) {
    return objc_autorelease(object);
}

Object* objc_retainAutoreleaseReturnValue(Object* object) {
    return objc_retainAutorelease(object);
}

Object* objc_retainAutoreleasedReturnValue(Object* object) {
    return objc_retain(object);
}

Object* objc_unsafeClaimAutoreleasedReturnValue(Object* object) {
    return object;
}

std::size_t objc_autoreleasePoolPush() {
    return pooled().size();
}

void objc_autoreleasePoolPop(std::size_t size) {
    while (pooled().size() > size) {
        auto* object = pooled().back();
        pooled().pop_back();
        objc_release(object);
    }
}

Object* objc_getProperty(Object* self, const Selector* /*selector*/, std::ptrdiff_t offset, bool /*atomic*/) {
    const std::lock_guard lock(propertyMutex());
    return objc_retainAutorelease(propertyOf(self, offset));
}

/// Copies blocks alone: whatever else is copied here never changes.
void objc_setProperty(Object* self, const Selector* /*selector*/, std::ptrdiff_t offset, Object* value,
                      bool /*atomic*/, bool copy) {
    value = copy && value != nullptr && isBlock(value) ? objc_retainBlock(value) : objc_retain(value);
    Object* before = nullptr;
    {
        const std::lock_guard lock(propertyMutex());
        before = std::exchange(propertyOf(self, offset), value);
    }
    objc_release(before);
}
}
