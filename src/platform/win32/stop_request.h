// Ctrl+C and the console's closing, which stop a run like a closed message queue does.
#pragma once

// From here on such a request is remembered instead of ending the process; the second one of a kind ends it.
void catchStopRequests();

bool isStopRequested();
