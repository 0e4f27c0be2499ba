// The main function of every group of tests.
//
// usage: PROGRAM CLASS [argument of Qt Test...]
#include "test_class.h"

#include <cstdio>
#include <map>
#include <string>

namespace
{
// In a function, because classes register before main().
std::map<std::string, TestClass::Run> &testClasses()
{
    static std::map<std::string, TestClass::Run> classes;
    return classes;
}

int refuse(const char *program, const std::string &problem)
{
    std::fprintf(stderr, "%s: %s; the test classes of this program are:\n", program,
                 problem.c_str());
    for (const auto &known : testClasses())
        std::fprintf(stderr, "  %s\n", known.first.c_str());
    return 2;
}
} // namespace

TestClass::TestClass(const char *name, Run run)
{
    if (!testClasses().emplace(name, run).second)
        qFatal("Two test classes of one program have the name %s", name);
}

int main(int argc, char **argv)
{
    if (argc < 2)
        return refuse(argv[0], "no test class is named");
    const auto chosen = testClasses().find(argv[1]);
    if (chosen == testClasses().end())
        return refuse(argv[0], "there is no test class " + std::string(argv[1]));

    // The class sees the arguments that it would have in a program of its own.
    argv[1] = argv[0];
    return chosen->second(argc - 1, argv + 1);
}
