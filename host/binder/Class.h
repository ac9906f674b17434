#pragma once

#include <android/binder_ibinder.h>

#include <string>

/** The C functions and the name of one kind of object. Lives for ever; set up before it is used. */
struct AIBinder_Class {
    std::string descriptor;
    /** The interface token: the same in the form parcels carry. */
    std::u16string token;
    AIBinder_Class_onCreate onCreate;
    AIBinder_Class_onDestroy onDestroy;
    AIBinder_Class_onTransact onTransact;
    AIBinder_onDump onDump = nullptr;
    bool hasToken = true;
    /** All classes are chained, so that they are found to be in use. */
    AIBinder_Class* previous = nullptr;
};
