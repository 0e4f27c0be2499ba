#include "virtual/fuse/reader_program.h"

#include "virtual/fuse/operation_log.h"
#include "virtual/fuse/program_options.h"
#include "virtual/fuse/reader_mount.h"
#include "virtual/gba_save_choice.h"
#include "virtual/image_generator.h"
#include "virtual/reader_setup.h"
#include "virtual/save_file.h"

#include <cstdio>

namespace virtual_reader
{

namespace
{

constexpr int kExitError = 1;
constexpr int kExitUsage = 2;

int complain(const std::string &error)
{
    std::fprintf(stderr, "gbdriver-virtual-reader: %s\n", error.c_str());
    return kExitError;
}

bool makeImage(const ProgramOptions &options, ByteVector *image, std::string *error)
{
    if (options.setup.cartridge.system != CartridgeSystem::Gba)
        return makeGbImage(options.image, image, error);
    const auto save = chooseGbaSave(options.setup.cartridge, SaveKind::None, error);
    if (!save.has_value())
        return false;
    GbaImageSpec spec = options.gbaImage;
    spec.saveKind = save->kind;
    return makeGbaImage(spec, image, error);
}

int writeImage(const ProgramOptions &options)
{
    ByteVector image;
    std::string error;
    if (!makeImage(options, &image, &error))
        return complain(error);
    return replaceFile(options.imagePath, image, &error) ? 0 : complain(error);
}

int serve(const ProgramOptions &options)
{
    std::string error;
    ReaderSetup setup = options.setup;
    setup.config.keepOperations = false; // a mount may stand for days
    const std::unique_ptr<KeptReader> reader = KeptReader::create(setup, &error);
    if (reader == nullptr)
        return complain(error);
    OperationLog log;
    if (!options.logPath.empty()) {
        if (!log.open(options.logPath, &error))
            return complain(error);
        reader->reader().setListener([&log](const Operation &operation) { log.write(operation); });
    }
    return serveMount(*reader, options.mount, &error) ? 0 : complain(error);
}

} // namespace

int runReaderProgram(int argc, char **argv)
{
    ProgramOptions options;
    std::string error;
    if (!parseProgramOptions(argc, argv, &options, &error)) {
        complain(error);
        std::fprintf(stderr, "Try --help.\n");
        return kExitUsage;
    }
    if (options.help) {
        std::fputs(programUsage().c_str(), stdout);
        return 0;
    }
    return options.imagePath.empty() ? serve(options) : writeImage(options);
}

} // namespace virtual_reader
