#pragma once

class QObject;

// Connects a signal of the module's view to a slot by their signatures, as
// QML does: the host does not compile against the module's classes. When
// the view has no signal of exactly that signature, a signal of the same
// name whose arguments begin with the slot's is taken, so a slot written
// for "changed()" also hears a view that announces "changed(bool)". False
// when either end does not exist.
bool connectByName(QObject* sender, const char* signal, QObject* receiver, const char* slot);
