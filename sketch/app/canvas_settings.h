// What is set once and holds for every stroke.
#pragma once

struct CanvasSettings {
    bool convertAlways = false;  // without being asked by holding still
    int holdMilliseconds = 500;  // how long the pen rests at the end of a stroke to ask for a reading
    int takeMilliseconds = 1500; // how long a reading that came unasked is shown before it is taken
    double tolerance = 1;        // as RecognitionSettings'
    double leastSizePx = 12;     // as RecognitionSettings'
    double stabiliser = 0.2;     // from 0 to 1
    double inkWidth = 2;         // screen pixels at full pressure
    bool snapToGrid = true;
    bool snapToShapes = true;
    bool snapToAngles = true;
    bool reducedMotion = false; // nothing fades or moves by itself
    bool fingersDraw = true;    // fingers pan and zoom when not
};
