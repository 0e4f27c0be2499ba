// Runs one statement of a script that has the natives of an operation:
//   wrong_job OPERATION STATEMENT
// `dev` is a job without a buffer. Prints "the script went on" when the statement has ended.
#include "script/natives.h"
#include "script/script_host.h"

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    class : public JobListener
    {
        void onLine(const QString & /*line*/) override {}
        void onProgress(int /*doneBytes*/, int /*maximum*/) override {}
        bool isStopWanted() override { return false; }
    } listener;
    RunningJob job(CartridgeJob{}, listener);
    job.job.operate = std::atoi(argv[1]);
    HSQUIRRELVM v = createVm(nullptr);
    const NativeSet natives = nativesOf(job.job.operate);
    for (int i = 0; i < natives.count; ++i)
        registerNative(v, natives.natives[i].name, natives.natives[i].function);
    const std::string script = std::string("function entry(dev) { ") + argv[2] + " }";
    if (SQ_FAILED(sq_compilebuffer(v, script.c_str(), static_cast<SQInteger>(script.size()), "test",
                                   SQTrue)))
        return 2;
    sq_pushroottable(v);
    sq_call(v, 1, SQFalse, SQTrue);
    sq_settop(v, 1);
    const SQRESULT result = callScriptFunction(v, "entry", &job, 0);
    std::puts("the script went on");
    sq_close(v);
    return result < 0 ? 1 : 0;
}
