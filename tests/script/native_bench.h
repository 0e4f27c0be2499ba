// Calls natives from a script, with a cartridge access table that records instead of acting.
//
// Everything runs on the test's own thread. Commands that natives send past the table reach the
// recording drive.
#pragma once

#include "job_events.h"
#include "recording_drive.h"

#include <squirrel.h>

#include <cstdint>
#include <vector>

class NativeBench
{
public:
    // A job with operation code `operate` and a buffer of `bufferSize` bytes. The size that the
    // operation does not use for its buffer is kOtherSize.
    explicit NativeBench(int operate, int bufferSize = 0x8000);
    ~NativeBench();
    NativeBench(const NativeBench &) = delete;
    NativeBench &operator=(const NativeBench &) = delete;

    // Runs `statements` in a script function that has the job as `dev`.
    // Returns: true if it ended without an error.
    bool run(const QByteArray &statements);

    // What the next operations of the table return, one each; then each returns its length, and
    // bus writes 512 a pair.
    void setResults(const QList<std::uint32_t> &results);

    // Calls of the table since the last run(): "gbRead 4000 +512 @16" is 512 bytes from 0x4000, at
    // place 16 of the buffer; "gbWrite 2000<-1 3000<-0" a batch of bus writes. Addresses and values
    // are hexadecimal.
    QStringList operations;
    // "512/32768" for every progress report since the last run().
    QStringList progress() const;
    // What the script printed, and its error messages, since the last run().
    QStringList logs() const;
    QStringList errors() const;

    static constexpr int kOtherSize = 0x777;

    RunningJob job;
    RecordingDrive drive;

private:
    template <int slot>
    static std::uint32_t transfer(std::uint32_t first, void *buffer, std::uint32_t length);
    static std::uint32_t writePairs(const std::uint32_t *addresses, const std::uint32_t *values,
                                    std::uint32_t count);
    std::uint32_t nextResult(std::uint32_t usual);

    static NativeBench *s_current;

    QStringList m_events;
    JobRecorder m_recorder{&m_events};
    std::vector<unsigned char> m_buffer;
    QList<std::uint32_t> m_results;
    HSQUIRRELVM m_vm = nullptr;
};
