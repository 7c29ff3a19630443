#pragma once

#include "core/JSONConfigurationArray.h"
#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationValue.h"

#include <memory>
#include <type_traits>

// Binds a leaf of a settings node to a property of a live object through the
// object's own getter and setter, so that a settings class states each leaf
// in one line: its key, its accessors and, where the value has limits, its
// validator. Going through the setter keeps the object's change signals and
// clamping in one place for the user interface and for files alike.
//
// Without a validator every value of the leaf's JSON type is accepted. The
// leaf keeps a raw pointer to the object: the node must not outlive it.
namespace JSONConfigurationBinding {

template<typename Leaf, typename Object, typename Value, typename Argument>
std::unique_ptr<Leaf> makeLeaf(QString key, Object* object, Value (Object::*getter)() const,
                               void (Object::*setter)(Argument), typename Leaf::Validator validator)
{
    return std::make_unique<Leaf>(
        std::move(key), [object, getter] { return (object->*getter)(); },
        [object, setter](const auto& value) { (object->*setter)(value); }, std::move(validator));
}

// A leaf holding one bool, number or text; its type is the getter's.
template<typename Object, typename Value, typename Argument>
void bindValue(JSONConfigurationObject& node, QString key, Object* object, Value (Object::*getter)() const,
               void (Object::*setter)(Argument),
               typename JSONConfigurationValue<std::decay_t<Value>>::Validator validator = {})
{
    node.addChild(makeLeaf<JSONConfigurationValue<std::decay_t<Value>>>(std::move(key), object, getter, setter,
                                                                       std::move(validator)));
}

// A leaf holding a vector of numbers, stored as a JSON array.
template<typename Object, typename Value, typename Argument>
void bindArray(JSONConfigurationObject& node, QString key, Object* object, Value (Object::*getter)() const,
               void (Object::*setter)(Argument),
               typename JSONConfigurationArray<std::decay_t<Value>>::Validator validator = {})
{
    node.addChild(makeLeaf<JSONConfigurationArray<std::decay_t<Value>>>(std::move(key), object, getter, setter,
                                                                       std::move(validator)));
}

}
