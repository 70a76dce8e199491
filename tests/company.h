// Processes that compute as long as this object lives, so that others find the processors busy.
#pragma once
#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

class Company {
    std::vector<pid_t> children;

public:
    explicit Company(int n)
    {
        for (int i = 0; i < n; ++i) {
            const pid_t child = fork();
            if (child == 0) {
                prctl(PR_SET_PDEATHSIG, SIGKILL); // should the program die
                for (volatile unsigned x = 0;;) x = x + 1;
            }
            if (child > 0) children.push_back(child);
        }
    }
    ~Company()
    {
        for (const pid_t child : children) kill(child, SIGKILL), waitpid(child, nullptr, 0);
    }
    Company(const Company&) = delete;
    Company& operator=(const Company&) = delete;
};
