// A shared library opened at run time (platform/SharedLibrary.cpp holds the system
// calls).
#pragma once

#include <string>

namespace ffrunner {

class SharedLibrary {
public:
    // Opens the library; Loaded() tells whether it worked and Error() why not.
    explicit SharedLibrary(const std::string& path);
    ~SharedLibrary();
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    bool Loaded() const { return handle_ != nullptr; }
    const std::string& Error() const { return error_; }

    // The address of an exported symbol, or null.
    void* Symbol(const char* name) const;

private:
    void* handle_ = nullptr;
    std::string error_;
};

}  // namespace ffrunner
