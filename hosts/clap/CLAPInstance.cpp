// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPInstance.hpp"

#include "hosts/clap/CLAPTransport.hpp"
#ifdef QUILLO_HAS_EDITOR
#include "hosts/clap/CLAPEditor.hpp"
#endif

namespace quillo {

CLAPInstance::CLAPInstance(const clap_host_t& theHost)
    : host(theHost), session(HostTransport(CLAPTransport::tolerance)), renderer(session) {
    session.setOnEdit([this] {
        host.markDirty();
        wake();
    });
}

void CLAPInstance::wake() {
    if (renderer.mustBeWoken()) {
        host.requestProcess();
    }
}

void CLAPInstance::idle() {
#ifdef QUILLO_HAS_EDITOR
    if (editor) {
        editor->view.idle();
    }
#endif
    wake();
}

}  // namespace quillo
