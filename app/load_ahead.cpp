// SPDX-License-Identifier: Apache-2.0
#include "app/load_ahead.h"

#include <QLibrary>
#include <QSslSocket>

#include <dlfcn.h>

namespace {

void loadFonts()
{
    // Qt's platform plugins bring this library along; the call is theirs, too.
    if (const QFunctionPointer initialise = QLibrary::resolve("fontconfig", 1, "FcInit"))
        initialise();
}

void loadMedia()
{
    // Only an engine that was built with it has it in the process already.
    using Initialise = int (*)(int *, char ***, void **);
    if (void *const symbol = ::dlsym(RTLD_DEFAULT, "gst_init_check"))
        reinterpret_cast<Initialise>(symbol)(nullptr, nullptr, nullptr);
}

} // namespace

std::future<void> loadAhead()
{
    return std::async(std::launch::async, [] {
        loadFonts();
        // The engine asks for it in front of its first request, even one without TLS.
        QSslSocket::supportsSsl();
        loadMedia();
    });
}
