#include "runner/SharedLibrary.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace ffrunner {

#if defined(_WIN32)

SharedLibrary::SharedLibrary(const std::string& path) {
    handle_ = reinterpret_cast<void*>(LoadLibraryA(path.c_str()));
    if (handle_ == nullptr) error_ = "cannot load (error " + std::to_string(GetLastError()) + ")";
}

SharedLibrary::~SharedLibrary() {
    if (handle_ != nullptr) FreeLibrary(reinterpret_cast<HMODULE>(handle_));
}

void* SharedLibrary::Symbol(const char* name) const {
    if (handle_ == nullptr) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(reinterpret_cast<HMODULE>(handle_), name));
}

#else

SharedLibrary::SharedLibrary(const std::string& path) {
    // A bare file name would make the loader search the system's folders.
    const std::string local = path.find('/') == std::string::npos ? "./" + path : path;
    handle_ = dlopen(local.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle_ == nullptr) {
        const char* reason = dlerror();
        error_ = reason != nullptr ? reason : "cannot load";
    }
}

SharedLibrary::~SharedLibrary() {
    if (handle_ != nullptr) dlclose(handle_);
}

void* SharedLibrary::Symbol(const char* name) const {
    if (handle_ == nullptr) return nullptr;
    return dlsym(handle_, name);
}

#endif

}  // namespace ffrunner
