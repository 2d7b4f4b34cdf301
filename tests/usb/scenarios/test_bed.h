#pragma once
// Where a scenario finds the controller emulator and keeps its files inside
// the test VM, and the UDC ports that dummy_hcd provides.
#include <string>

struct TestBed {
    std::string emulator;  // path of the controller_emulator program
    std::string work_dir;  // scratch directory for logs and captured output

    std::string file(const std::string& name) const { return work_dir + "/" + name; }
    // Another program of the test bed, next to the emulator.
    std::string program(const std::string& name) const
    {
        const size_t slash = emulator.rfind('/');
        return (slash == std::string::npos ? std::string() : emulator.substr(0, slash + 1)) + name;
    }
};

inline const char* const first_udc = "dummy_udc.0";
inline const char* const second_udc = "dummy_udc.1";
