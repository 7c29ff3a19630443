#pragma once

class QTextStream;

// Redraws a one-line progress bar ("[#####     ]  50%") in place.
void drawProgress(QTextStream& out, int percent);
