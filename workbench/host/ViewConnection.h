#pragma once

class QObject;

// Connects a signal of the module's view to a slot by their signatures, as
// QML does: the host does not compile against the module's classes. False
// when either end does not exist.
bool connectByName(QObject* sender, const char* signal, QObject* receiver, const char* slot);
