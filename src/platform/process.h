// Another program that is fed through a pipe and asked for its last words.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

struct Process;

// A second input beside the standard one. Its bytes are asked for while the first is fed and while the program ends,
// whenever it takes more: at most `size` of them; 0 when there are none for now, which at the end means for good.
struct SecondInput {
    size_t (*next)(void* source, char* bytes, size_t size) = nullptr; // null: none
    void* source = nullptr;
};

// By which name a program opens its second input; null on systems where it cannot have one.
extern const char* const kSecondInputName;

// Starts the program that the first argument names (looked for on the PATH), without a shell between. Its
// standard input is a pipe from here, its standard output goes nowhere, and the end of what it says on
// standard error is kept. Keys that stop the player do not reach it. Null, with the system's words in
// `reason`, when it cannot be started.
Process* startProcess(const std::vector<std::string>& arguments, std::string& reason, SecondInput second = {});

// Writes to its input and waits while it is busy. False when it takes no more, or once `cancelled` is set
// (by another thread).
bool feedProcess(Process* process, const void* bytes, size_t size, const std::atomic<bool>& cancelled);

// Closes its inputs, the second one when it has taken all of it, waits for its end and releases it; kills it once
// `cancelled` is set. True when it ended with exit code 0. `said` is the end of what it said; how it failed if that
// is nothing.
bool finishProcess(Process* process, const std::atomic<bool>& cancelled, std::string& said);
