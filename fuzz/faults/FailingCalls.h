#pragma once

#include <string>

namespace varnith::test {

// The kinds of calls that can be made to fail. Each covers the functions of the C library that do this work.
enum class Call {
    Open,
    Read,
    List,
    Stat,
    Write,
    Rename,
    Sync,
    Remove,
    Make,
    Mode,
    Truncate,
    Lock,
    Map,
    Socket,
    Connect,
    Send,
    Receive,
    Event,
    LookUp,
    Thread,
    Spawn,
    Pipe,
    Memory,
    Database,  // of SQLite to the layer below it; see FailingDatabase.h
};

struct Fault {
    Call call;
    int error;    // an errno; for Call::LookUp a code of getaddrinfo(3), for Call::Database one of SQLite
    long number;  // the call that fails, from 1
    bool lasts;   // whether all later ones fail, too
    const char* function;  // the only one whose calls count; null for all of the kind
};

// Makes the calls of this process fail, those of its libraries included, from now on until EndFault. This
// works because a program's own functions come before those of shared libraries. Of allocations, only those
// of more than a page fail.
void BeginFault(const Fault& fault);

// Returns the name of the function that has failed last; empty if none has.
std::string EndFault();

// Counts a call of a function that is not the C library's. Returns the fault's error if the call is to fail,
// else 0.
int FailureOf(Call call, const char* function);

// Exempts this thread's calls for the lifetime of the object.
class Unfailing {
  public:
    Unfailing();
    Unfailing(const Unfailing&) = delete;
    Unfailing& operator=(const Unfailing&) = delete;
    ~Unfailing();
};

}  // namespace varnith::test
