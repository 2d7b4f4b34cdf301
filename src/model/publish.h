#pragma once
namespace dialcraft {

// Assigns a published field: announces the change before storing, whether or
// not the value differs, then emits the field's own change signal.
template <typename Object, typename T, typename Signal>
void publish(Object* object, T& field, const T& value, Signal changed)
{
    emit object->objectWillChange();
    field = value;
    emit(object->*changed)();
}

}  // namespace dialcraft
