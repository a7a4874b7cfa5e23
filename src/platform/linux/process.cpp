#include "platform/process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

const char* const kSecondInputName = "pipe:3";

struct Process {
    pid_t id = -1;
    int input = -1;   // its standard input; -1 once closed
    int errors = -1;  // its standard error
    std::string said; // the end of what it said there

    SecondInput source;
    int second = -1;         // its second input
    std::vector<char> asked; // bytes from the source, of which the first `sent` are in the pipe
    size_t given = 0;        // by the source
    size_t sent = 0;
};

namespace {

constexpr size_t kKeptBytes = 4096;     // of its standard error
constexpr int kTickMilliseconds = 100;  // between looks at `cancelled`
constexpr int kEndTickMilliseconds = 2; // once it has nothing more to say, which is just before its end
constexpr int kPipeBytes = 1 << 20;     // fewer switches between the two programs; the system may grant less
constexpr int kSecondDescriptor = 3;    // of the program's
constexpr size_t kAskedBytes = 1 << 16; // at a time for the second input

struct Pipe {
    int reading = -1;
    int writing = -1;
};

bool openPipe(Pipe& ends) {
    int numbers[2] = {};
    if (pipe2(numbers, O_CLOEXEC) != 0) return false;
    ends = {numbers[0], numbers[1]};
    return true;
}

void closeFile(int& file) {
    if (file >= 0) close(file);
    file = -1;
}

void closePipe(Pipe& ends) {
    closeFile(ends.reading);
    closeFile(ends.writing);
}

// 0, or the system's error number.
int spawn(const std::vector<std::string>& arguments, int input, int errors, int second, pid_t& id) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&files, errors, STDERR_FILENO);
    if (second >= 0) posix_spawn_file_actions_adddup2(&files, second, kSecondDescriptor);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // A group of its own keeps Ctrl+C from it; what the player ignores it must not inherit as ignored.
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF);
    const int error = posix_spawnp(&id, pointers[0], &files, &attributes, pointers.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error;
}

// Takes what it has said so far; false when it has closed the pipe.
bool readErrors(Process& process) {
    char buffer[1024];
    while (true) {
        const ssize_t count = read(process.errors, buffer, sizeof buffer);
        if (count == 0) return false;
        if (count < 0) return errno == EAGAIN || errno == EINTR;
        process.said.append(buffer, static_cast<size_t>(count));
        if (process.said.size() > kKeptBytes) process.said.erase(0, process.said.size() - kKeptBytes);
    }
}

bool hasMore(const Process& process) {
    return process.sent < process.given;
}

// Gives the second input what there is for it, without waiting.
void feedSecond(Process& process) {
    while (process.second >= 0) {
        if (!hasMore(process)) {
            process.given = process.source.next(process.source.source, process.asked.data(), kAskedBytes);
            process.sent = 0;
        }
        if (!hasMore(process)) return;
        const ssize_t count = write(process.second, process.asked.data() + process.sent, process.given - process.sent);
        if (count >= 0) process.sent += static_cast<size_t>(count);
        else if (errno == EAGAIN) return;
        else if (errno != EINTR) closeFile(process.second); // it takes no more of this; the first goes on
    }
}

// Waits until an input takes bytes or it says something, at most for one tick.
void waitForProcess(Process& process) {
    const int second = hasMore(process) ? process.second : -1; // files below 0 are left out
    pollfd files[3] = {{process.errors, POLLIN, 0}, {process.input, POLLOUT, 0}, {second, POLLOUT, 0}};
    const bool talks = process.errors >= 0 || process.input >= 0 || second >= 0;
    if (poll(files, std::size(files), talks ? kTickMilliseconds : kEndTickMilliseconds) <= 0) return;
    if (files[0].revents && !readErrors(process)) closeFile(process.errors);
}

std::string describeEnd(int status) {
    if (WIFSIGNALED(status)) return std::string("ended by signal: ") + strsignal(WTERMSIG(status));
    return "exit code " + std::to_string(WEXITSTATUS(status));
}

} // namespace

Process* startProcess(const std::vector<std::string>& arguments, std::string& reason, SecondInput source) {
    std::signal(SIGPIPE, SIG_IGN);
    Pipe input, errors, second;
    Process* process = new Process();
    int error = openPipe(input) && openPipe(errors) && (!source.next || openPipe(second)) ? 0 : errno;
    if (!error) error = spawn(arguments, input.reading, errors.writing, second.reading, process->id);
    if (error) {
        reason = std::strerror(error);
        closePipe(input);
        closePipe(errors);
        closePipe(second);
        delete process;
        return nullptr;
    }
    closeFile(input.reading);
    closeFile(errors.writing);
    closeFile(second.reading);
    process->source = source;
    process->second = second.writing;
    process->input = input.writing;
    process->errors = errors.reading;
    fcntl(process->input, F_SETFL, O_NONBLOCK);
    fcntl(process->errors, F_SETFL, O_NONBLOCK);
    fcntl(process->input, F_SETPIPE_SZ, kPipeBytes);
    if (process->second >= 0) {
        fcntl(process->second, F_SETFL, O_NONBLOCK);
        process->asked.resize(kAskedBytes);
    }
    return process;
}

bool feedProcess(Process* process, const void* bytes, size_t size, const std::atomic<bool>& cancelled) {
    const char* next = static_cast<const char*>(bytes);
    while (size > 0) {
        if (cancelled) return false;
        feedSecond(*process);
        const ssize_t count = write(process->input, next, size);
        if (count >= 0) {
            next += count;
            size -= static_cast<size_t>(count);
        } else if (errno == EAGAIN) {
            waitForProcess(*process);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool finishProcess(Process* process, const std::atomic<bool>& cancelled, std::string& said) {
    closeFile(process->input);
    int status = 0;
    bool killed = false;
    pid_t ended = 0;
    // Its end is what counts, not the pipe's: a program that it has started may hold that open.
    while ((ended = waitpid(process->id, &status, WNOHANG)) == 0 || (ended < 0 && errno == EINTR)) {
        if (cancelled && !killed) killed = kill(process->id, SIGKILL) == 0;
        feedSecond(*process);
        if (!hasMore(*process)) closeFile(process->second);
        waitForProcess(*process);
    }
    if (process->errors >= 0) readErrors(*process);
    closeFile(process->errors);
    closeFile(process->second);
    const bool succeeded = ended == process->id && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    said = process->said;
    if (!succeeded && said.find_first_not_of(" \t\r\n") == std::string::npos) said = describeEnd(status);
    delete process;
    return succeeded;
}
