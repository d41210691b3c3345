#pragma once

#include <string>

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::test
{

/// A program that lies beside this one, run until it ends or the test does. What it prints is read at its end.
class ChildProgram
{
   public:
    explicit ChildProgram(const char* name)
    {
        std::string command(MAX_PATH, 0);
        command.resize(GetModuleFileNameA(nullptr, command.data(), MAX_PATH));
        command.replace(command.find_last_of('\\') + 1, std::string::npos, name);
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE output = nullptr;
        CreatePipe(&m_printed, &output, &inherited, 0);
        SetHandleInformation(m_printed, HANDLE_FLAG_INHERIT, 0);
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = startup.hStdError = output;
        m_runs = CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                                &m_process) != 0;
        CloseHandle(output);
    }
    ~ChildProgram()
    {
        if (m_runs)
        {
            TerminateProcess(m_process.hProcess, 0);
            WaitForSingleObject(m_process.hProcess, 10000);
            CloseHandle(m_process.hThread);
            CloseHandle(m_process.hProcess);
        }
        CloseHandle(m_printed);
    }
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    bool runs() const { return m_runs; }
    DWORD id() const { return m_process.dwProcessId; }
    HANDLE process() const { return m_process.hProcess; }
    HANDLE thread() const { return m_process.hThread; }

    bool endsWithin(DWORD milliseconds) const
    {
        return WaitForSingleObject(m_process.hProcess, milliseconds) == WAIT_OBJECT_0;
    }
    DWORD exitCode() const
    {
        DWORD code = 0;
        GetExitCodeProcess(m_process.hProcess, &code);
        return code;
    }
    std::string printed() const
    {
        std::string text;
        char part[256];
        DWORD count = 0;
        while (ReadFile(m_printed, part, sizeof part, &count, nullptr) && count > 0) text.append(part, count);
        return text;
    }

   private:
    HANDLE m_printed = nullptr;
    PROCESS_INFORMATION m_process{};
    bool m_runs = false;
};

}  // namespace Oxa_1_1::test
