#pragma once

#include <map>
#include <string>
#include <typeinfo>

// The host's service registry: an ordered map from the run-time type name of
// a service's interface ("class IBroker") to an untyped pointer to it.
using ServiceRegistry = std::map<std::string, void*>;

namespace ServiceKey {
// Key for the type whose std::type_info is given: "class " followed by the
// demangled type name, the form the host's registry has always used.
std::string fromTypeInfo(const std::type_info& type);
}

template <typename T>
std::string serviceKey()
{
    return ServiceKey::fromTypeInfo(typeid(T));
}

// Null when the registry holds no service of type T.
template <typename T>
T* lookupService(const ServiceRegistry& registry)
{
    const auto it = registry.find(serviceKey<T>());
    return it == registry.end() ? nullptr : static_cast<T*>(it->second);
}

// Inserts or overwrites the entry of type T.
template <typename T>
void publishService(ServiceRegistry& registry, T* service)
{
    registry[serviceKey<T>()] = static_cast<void*>(service);
}
