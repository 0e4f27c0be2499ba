#include "virtual/backend_choice.h"

#include "virtual/option_values.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace virtual_reader
{

namespace
{

bool setCartridgePart(const std::string &name, const std::string &text,
                      VirtualReaderRequest *request)
{
    const CartridgeOptionRow *row = findCartridgeOption(name);
    return row != nullptr && row->apply(text, &request->setup.cartridge);
}

bool setPart(const std::string &name, const std::string &text, VirtualReaderRequest *request)
{
    if (name == "cart" && text == "none")
        request->emptySlot = true;
    else if (name == "cart")
        request->setup.cartPath = text;
    else if (name == "save")
        request->setup.savePath = text;
    else if (name == "label")
        request->drive.label = text;
    else if (name == "identity")
        request->setup.config.identity = text;
    else if (name == "drive" && text.size() == 1 &&
             std::isalpha(static_cast<unsigned char>(text[0])) != 0)
        request->drive.letter =
            static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    else if (name == "strict" && (text == "0" || text == "1"))
        request->setup.config.strictSectors = text == "1";
    else if (name == "fail-command")
        return parseCount(text, &request->setup.config.fault.failedCommand);
    else if (name == "pull-out")
        return parseCount(text, &request->setup.config.fault.pulledAt);
    else if (name == "timing")
        return parseTiming(text, &request->setup.config.timing);
    else
        return setCartridgePart(name, text, request);
    return !text.empty();
}

bool parsePart(const std::string &part, VirtualReaderRequest *request)
{
    if (part == "demo") {
        request->setup.demo = true;
        return true;
    }
    const std::size_t equals = part.find('=');
    return equals != std::string::npos &&
           setPart(part.substr(0, equals), part.substr(equals + 1), request);
}

std::string explain(const std::string &what)
{
    std::string text =
        std::string(kVirtualReaderVariable) + ": " + what +
        "; it takes demo, cart=FILE or cart=none, then save=FILE, label=TEXT, "
        "drive=LETTER, identity=TEXT, strict=0 or strict=1, fail-command=NUMBER, pull-out=NUMBER, "
        "timing=full-speed or timing=BYTES:MICROSECONDS";
    for (const CartridgeOptionRow &row : cartridgeOptionRows())
        text += std::string(", ") + row.name + "=" + row.value;
    return text + ", separated by commas";
}

} // namespace

bool parseVirtualReaderRequest(const std::string &value, VirtualReaderRequest *request,
                               std::string *error)
{
    std::size_t start = 0;
    while (start <= value.size()) {
        const std::size_t end = std::min(value.find(',', start), value.size());
        const std::string part = value.substr(start, end - start);
        if (!parsePart(part, request)) {
            *error = explain("\"" + part + "\" is not understood");
            return false;
        }
        start = end + 1;
    }
    const ReaderSetup &setup = request->setup;
    if (setup.demo + request->emptySlot + !setup.cartPath.empty() != 1) {
        *error = explain("either demo or cart=FILE must be given");
        return false;
    }
    return true;
}

ChosenBackend chooseDriveBackend(const char *value)
{
    ChosenBackend choice;
    choice.platform = createPlatformBackend();
    if (value == nullptr || *value == '\0')
        return choice;
    VirtualReaderRequest request;
    if (!parseVirtualReaderRequest(value, &request, &choice.error))
        return choice;
    request.setup.config.keepOperations = false; // the counters are enough
    auto reader = KeptReader::create(request.setup, &choice.error);
    if (reader == nullptr) {
        choice.error = std::string(kVirtualReaderVariable) + ": " + choice.error;
        return choice;
    }
    choice.virtualDrive =
        std::make_unique<InProcessDrive>(std::move(reader), *choice.platform, request.drive);
    return choice;
}

} // namespace virtual_reader
