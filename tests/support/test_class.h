// Test classes, many of them in one program. Each source of a test ends in
//
//     GBDRIVER_TEST(DeviceLinkTest, none)
//     #include "device_link_test.moc"
//
// where the second word tells beside which application object the class runs: none, core (a
// QCoreApplication) or gui (a QApplication). gbdriver_test_group() of CMake makes the program; its
// first argument names the class to run, the others are those of Qt Test.
#pragma once

#include <QtTest>

// Makes the class known by its name to the program's main function. To be made before main() only.
class TestClass
{
public:
    // Runs the test functions that the arguments name.
    // Returns: how many failed.
    using Run = int (*)(int argc, char **argv);

    TestClass(const char *name, Run run);
};

namespace TestRuns
{
template <typename Class> int none(int argc, char **argv)
{
    Class test;
    return QTest::qExec(&test, argc, argv);
}

template <typename Application, typename Class> int beside(int argc, char **argv)
{
    Application application(argc, argv);
    application.setAttribute(Qt::AA_Use96Dpi, true); // as in every program of Qt Test
    return none<Class>(argc, argv);
}

template <typename Class> int core(int argc, char **argv)
{
    return beside<QCoreApplication, Class>(argc, argv);
}

#ifdef QT_WIDGETS_LIB
template <typename Class> int gui(int argc, char **argv)
{
    return beside<QApplication, Class>(argc, argv);
}
#endif
} // namespace TestRuns

#define GBDRIVER_TEST(Class, application)                                                          \
    static const TestClass registered##Class(#Class, TestRuns::application<Class>);
