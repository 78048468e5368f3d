#pragma once

#include <chrono>
#include <cstdio>
#include <string>

// Shared by the programs that measure a routine. They print a line for each run and comparison: the name, the
// seconds of Varnith's code and the seconds of what it is compared with, separated by tabs.
template <class Work>
double SecondsOf(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline void Print(const std::string& name, double seconds, double bare_seconds) {
    std::printf("%s\t%.9f\t%.9f\n", name.c_str(), seconds, bare_seconds);
    std::fflush(stdout);
}

template <class Work, class Bare>
void Compare(const std::string& name, Work&& work, Bare&& bare) {
    const double seconds = SecondsOf(work);
    Print(name, seconds, SecondsOf(bare));
}

// Keeps the compiler from optimising away work whose result is unused.
template <class T>
void Use(const T& value) {
    asm volatile("" : : "r"(&value) : "memory");
}
