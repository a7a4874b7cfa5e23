#include "platform/process.h"

#include "platform/files.h"
#include "platform/win32/error_words.h"

#include <algorithm>

#include <windows.h>

const char* const kSecondInputName = nullptr;

// One end of a pipe to another program, used without waiting.
struct PipeEnd {
    HANDLE file = INVALID_HANDLE_VALUE;
    OVERLAPPED state = {}; // of the transfer that is on its way; its event is set when that is done
    bool busy = false;     // one is
};

struct Process {
    HANDLE process = nullptr;
    PipeEnd input;
    PipeEnd errors;
    char heard[1024] = {}; // where the transfer from `errors` goes
    std::string said;      // the end of what it said there
};

namespace {

constexpr size_t kKeptBytes = 4096;      // of its standard error
constexpr DWORD kTickMilliseconds = 100; // between looks at `cancelled`
constexpr DWORD kPipeBytes = 1 << 20;    // fewer switches between the two programs

void closeHandle(HANDLE& handle) {
    if (handle && handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
    handle = INVALID_HANDLE_VALUE;
}

void closeEnd(PipeEnd& end) {
    DWORD count = 0;
    if (end.busy && CancelIoEx(end.file, &end.state)) GetOverlappedResult(end.file, &end.state, &count, TRUE);
    end.busy = false;
    closeHandle(end.file);
    if (end.state.hEvent) CloseHandle(end.state.hEvent);
    end.state = {};
}

// A handle that the program inherits.
HANDLE openInheritable(const char* name, DWORD access) {
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    return CreateFileA(name, access, 0, &inheritable, OPEN_EXISTING, 0, nullptr);
}

// Pipes without a name cannot be used without waiting, so this one has a name, which no other process can
// take: it is made with room for the one connection that is made at once. `direction` is that of `ours`.
bool openPipe(DWORD direction, PipeEnd& ours, HANDLE& theirs) {
    static std::atomic<unsigned> number = 0;
    const std::string name = "\\\\.\\pipe\\quillon-player-" + std::to_string(GetCurrentProcessId()) + "-" +
                             std::to_string(++number);
    ours.file = CreateNamedPipeA(name.c_str(), direction | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
                                 PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, kPipeBytes, kPipeBytes, 0, nullptr);
    if (ours.file == INVALID_HANDLE_VALUE) return false;
    ours.state.hEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    theirs = openInheritable(name.c_str(), direction == PIPE_ACCESS_OUTBOUND ? GENERIC_READ : GENERIC_WRITE);
    return theirs != INVALID_HANDLE_VALUE;
}

std::string environmentPath() {
    std::string path(GetEnvironmentVariableA("PATH", nullptr, 0), '\0');
    path.resize(GetEnvironmentVariableA("PATH", path.data(), static_cast<DWORD>(path.size())));
    return path;
}

// Beside the player, then on the PATH; never in the current directory, which may be a stranger's show, nor in
// what a PATH names relative to it. Empty when it is nowhere.
std::string findProgram(const std::string& name) {
    const std::string directories = executableDirectory() + ";" + environmentPath();
    for (size_t begin = 0; begin < directories.size();) {
        const size_t end = std::min(directories.find(';', begin), directories.size());
        std::string directory = directories.substr(begin, end - begin);
        begin = end + 1;
        std::erase(directory, '"');
        const std::string program = directory + "\\" + name + ".exe";
        if ((isAbsolutePath(directory) || directory.starts_with("\\\\")) && isRegularFile(program)) return program;
    }
    return "";
}

// As every program takes its command line apart: backslashes count only before a quote.
std::string quoted(const std::string& argument) {
    if (!argument.empty() && argument.find_first_of(" \t\n\v\"") == std::string::npos) return argument;
    std::string text = "\"";
    size_t backslashes = 0;
    for (const char c : argument) {
        if (c == '"') text.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text.append(backslashes, '\\') + '"';
}

// Start-up facts that hand on these three handles and no other: whoever waits for the end of the player's own
// output would else wait for the other program too.
struct StartUp {
    STARTUPINFOEXA facts = {};
    HANDLE handles[3] = {};
    std::vector<char> memory; // of the list
};

void prepare(StartUp& startUp, HANDLE input, HANDLE output, HANDLE errors) {
    STARTUPINFOA& facts = startUp.facts.StartupInfo;
    facts.cb = sizeof startUp.facts;
    facts.dwFlags = STARTF_USESTDHANDLES;
    facts.hStdInput = startUp.handles[0] = input;
    facts.hStdOutput = startUp.handles[1] = output;
    facts.hStdError = startUp.handles[2] = errors;
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    startUp.memory.resize(size);
    startUp.facts.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(startUp.memory.data());
    InitializeProcThreadAttributeList(startUp.facts.lpAttributeList, 1, 0, &size);
    UpdateProcThreadAttribute(startUp.facts.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, startUp.handles,
                              sizeof startUp.handles, nullptr, nullptr);
}

bool spawn(const std::vector<std::string>& arguments, HANDLE input, HANDLE output, HANDLE errors, HANDLE& process) {
    const std::string program = findProgram(arguments.front());
    if (program.empty()) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return false;
    }
    std::string line;
    for (const std::string& argument : arguments) line += (line.empty() ? "" : " ") + quoted(argument);
    StartUp startUp;
    prepare(startUp, input, output, errors);
    PROCESS_INFORMATION started = {};
    // A group of its own keeps Ctrl+C from it; a console of its own would do so too, but Wine's outlives a program
    // that is killed before it has come up.
    const DWORD flags = CREATE_NEW_PROCESS_GROUP | EXTENDED_STARTUPINFO_PRESENT;
    const bool created = CreateProcessA(program.c_str(), line.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr,
                                        &startUp.facts.StartupInfo, &started);
    DeleteProcThreadAttributeList(startUp.facts.lpAttributeList);
    if (!created) return false;
    CloseHandle(started.hThread);
    process = started.hProcess;
    return true;
}

// True when the transfer has been begun, whether or not it is done already.
bool isBegun(PipeEnd& end, BOOL done) {
    end.busy = done || GetLastError() == ERROR_IO_PENDING;
    return end.busy;
}

// Waits for the transfer that is on its way, at most for so long; false when it is not done then. `count` is
// what was moved: 0 when the other side is gone.
bool isDone(PipeEnd& end, DWORD milliseconds, DWORD& count) {
    if (WaitForSingleObject(end.state.hEvent, milliseconds) != WAIT_OBJECT_0) return false;
    end.busy = false;
    if (!GetOverlappedResult(end.file, &end.state, &count, FALSE)) count = 0;
    return true;
}

// Takes what it has said so far.
void hear(Process& process) {
    PipeEnd& errors = process.errors;
    while (errors.file != INVALID_HANDLE_VALUE) {
        const bool begun = errors.busy || isBegun(errors, ReadFile(errors.file, process.heard, sizeof process.heard,
                                                                   nullptr, &errors.state));
        DWORD count = 0;
        if (begun && !isDone(errors, 0, count)) return;
        if (count == 0) {
            closeEnd(errors);
            return;
        }
        process.said.append(process.heard, count);
        if (process.said.size() > kKeptBytes) process.said.erase(0, process.said.size() - kKeptBytes);
    }
}

// Waits until the first handle is set or the program has said something, at most for one tick.
void waitForEither(Process& process, HANDLE first) {
    hear(process);
    const HANDLE handles[] = {first, process.errors.state.hEvent};
    WaitForMultipleObjects(process.errors.busy ? 2 : 1, handles, FALSE, kTickMilliseconds);
}

// The bytes that it took; 0 when it takes no more, or once cancelled.
DWORD write(Process& process, const void* bytes, size_t size, const std::atomic<bool>& cancelled) {
    PipeEnd& input = process.input;
    const DWORD most = static_cast<DWORD>(std::min<size_t>(size, kPipeBytes));
    DWORD count = 0;
    if (!isBegun(input, WriteFile(input.file, bytes, most, nullptr, &input.state))) return 0;
    while (!isDone(input, 0, count)) {
        if (cancelled) {
            closeEnd(input); // the bytes are the caller's, so nothing may still be on its way
            return 0;
        }
        waitForEither(process, input.state.hEvent);
    }
    return count;
}

} // namespace

Process* startProcess(const std::vector<std::string>& arguments, std::string& reason, SecondInput) {
    HANDLE input = INVALID_HANDLE_VALUE, errors = INVALID_HANDLE_VALUE;
    HANDLE output = openInheritable("NUL", GENERIC_WRITE);
    Process* process = new Process();
    const bool started = openPipe(PIPE_ACCESS_OUTBOUND, process->input, input) &&
                         openPipe(PIPE_ACCESS_INBOUND, process->errors, errors) &&
                         spawn(arguments, input, output, errors, process->process);
    if (!started) reason = lastErrorWords();
    for (HANDLE* handle : {&input, &output, &errors}) closeHandle(*handle);
    if (started) return process;
    closeEnd(process->input);
    closeEnd(process->errors);
    delete process;
    return nullptr;
}

bool feedProcess(Process* process, const void* bytes, size_t size, const std::atomic<bool>& cancelled) {
    const char* next = static_cast<const char*>(bytes);
    while (size > 0) {
        if (cancelled || process->input.file == INVALID_HANDLE_VALUE) return false;
        const DWORD count = write(*process, next, size, cancelled);
        if (count == 0) return false;
        next += count;
        size -= count;
    }
    return true;
}

bool finishProcess(Process* process, const std::atomic<bool>& cancelled, std::string& said) {
    closeEnd(process->input);
    bool killed = false;
    // Its end is what counts, not the pipe's: a program that it has started may hold that open.
    while (WaitForSingleObject(process->process, 0) == WAIT_TIMEOUT) {
        if (cancelled && !killed) killed = TerminateProcess(process->process, 1);
        waitForEither(*process, process->process);
    }
    hear(*process);
    closeEnd(process->errors);
    DWORD code = 1;
    GetExitCodeProcess(process->process, &code);
    CloseHandle(process->process);
    said = process->said;
    if (code != 0 && said.find_first_not_of(" \t\r\n") == std::string::npos) said = "exit code " + std::to_string(code);
    delete process;
    return code == 0;
}
