// Requests to stop that come from outside any window: Ctrl+C, a closed terminal or console, the end of the session.
#pragma once

// From now on they are counted, anew. The first stops the run when messages are pumped; a second one ends the process
// at once, as each does by default: a load or a frame may take too long to wait for.
void catchStopRequests();

int stopRequests();

// While they are held no request ends the process: the holder does, as soon as nothing half-done stays behind.
void holdStopRequests(bool hold);

// Ends the process as a stop request does by default.
[[noreturn]] void endByStopRequest();
