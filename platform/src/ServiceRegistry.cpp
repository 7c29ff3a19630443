#include "host/ServiceRegistry.h"

#include <cxxabi.h>
#include <cstdlib>
#include <memory>

std::string ServiceKey::fromTypeInfo(const std::type_info& type)
{
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> demangled(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
    const std::string name = (status == 0 && demangled) ? demangled.get() : type.name();
    return "class " + name;
}
