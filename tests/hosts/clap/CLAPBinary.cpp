// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPBinary.hpp"

#include <dlfcn.h>

#include <stdexcept>

namespace quillo::test {

CLAPBinary::CLAPBinary() : library_(::dlopen(QUILLO_CLAP, RTLD_NOW | RTLD_LOCAL)) {
    if (library_ == nullptr) {
        throw std::runtime_error(::dlerror());
    }
    entry_ = static_cast<const clap_plugin_entry_t*>(::dlsym(library_, "clap_entry"));
    if (entry_ == nullptr || !entry_->init(QUILLO_CLAP)) {
        throw std::runtime_error("no plug-in");
    }
}

CLAPBinary::~CLAPBinary() {
    entry_->deinit();
    ::dlclose(library_);
}

const clap_plugin_factory_t& CLAPBinary::factory() const {
    return *static_cast<const clap_plugin_factory_t*>(entry_->get_factory(CLAP_PLUGIN_FACTORY_ID));
}

}  // namespace quillo::test
