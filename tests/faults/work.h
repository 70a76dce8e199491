#pragma once
// Calls whose results are known, of both libraries, and processes that make them.
#include <cstddef>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

enum class Library { kesl, keslmx };
constexpr Library libraries[] = {Library::kesl, Library::keslmx};
const char* name(Library);

// Inverts so many matrices of order 3; whether all is right. The class has the memory, so that a call of `isRight` takes none.
class Work {
public:
    Work(Library, int count);
    bool isRight();

private:
    const Library library;
    const int count;
    std::vector<float> a, x;
};
constexpr int few = 7, many = 200000; // on the calling thread, and by a team

void askFor(int threads); // of both libraries

// The exit status of a child process that does this, 128 for one that hangs or dies.
template <class Body> int inChild(Body body)
{
    const pid_t child = fork();
    if (!child) {
        alarm(60);
        _exit(body());
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}
