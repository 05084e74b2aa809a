#include "programs/missingfonts/package/partname.h"

#include <vector>

#include "programs/missingfonts/common/bytes.h"
#include "programs/missingfonts/common/limits.h"

namespace programs {

namespace {

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string percentDecoded(std::string_view text)
{
    std::string result;
    for (std::size_t n = 0; n < text.size(); ++n) {
        if (text[n] == '%' && n + 2 < text.size() && hexadecimalDigit(text[n + 1]) >= 0 &&
            hexadecimalDigit(text[n + 2]) >= 0) {
            result += static_cast<char>(hexadecimalDigit(text[n + 1]) * 16 +
                                        hexadecimalDigit(text[n + 2]));
            n += 2;
        } else {
            result += text[n];
        }
    }
    return result;
}

/// Resolves "." and ".."; false when the path leads out of the package.
bool appendSteps(std::vector<std::string_view> &steps, std::string_view path)
{
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view step = path.substr(0, slash);
        path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
        if (step.empty() || step == ".")
            continue;
        if (step != "..") {
            steps.push_back(step);
            continue;
        }
        if (steps.empty())
            return false;
        steps.pop_back();
    }
    return true;
}

std::string joined(const std::vector<std::string_view> &steps)
{
    std::string name;
    for (const std::string_view step : steps) {
        if (!name.empty())
            name += '/';
        for (const char c : step)
            name += lower(c);
    }
    return name;
}

} // namespace

bool endsWith(std::string_view text, std::string_view ending)
{
    return text.size() >= ending.size() && text.substr(text.size() - ending.size()) == ending;
}

std::string partName(std::string_view pathInPackage)
{
    if (pathInPackage.size() > limits::partNameBytes)
        return {};
    const std::string decoded = percentDecoded(pathInPackage);
    std::vector<std::string_view> steps;
    if (!appendSteps(steps, decoded))
        return {};
    return joined(steps);
}

std::string targetPartName(const std::string &source, std::string_view target)
{
    target = target.substr(0, target.find('#'));
    const std::string decoded = percentDecoded(target);
    if (decoded.empty() || decoded.size() > limits::partNameBytes)
        return {};
    std::vector<std::string_view> steps;
    const std::size_t slash = source.rfind('/');
    if (decoded.front() != '/' && slash != std::string::npos)
        appendSteps(steps, std::string_view(source).substr(0, slash));
    if (!appendSteps(steps, decoded))
        return {};
    return joined(steps);
}

std::optional<std::string> relationshipsOwner(const std::string &name)
{
    constexpr std::string_view folder = "_rels/";
    constexpr std::string_view ending = ".rels";
    const std::size_t slash = name.rfind('/');
    const std::size_t fileStart = slash == std::string::npos ? 0 : slash + 1;
    const std::string directory = name.substr(0, fileStart);
    const std::string file = name.substr(fileStart);
    if (!endsWith(directory, folder) || !endsWith(file, ending))
        return std::nullopt;
    return directory.substr(0, directory.size() - folder.size()) +
           file.substr(0, file.size() - ending.size());
}

} // namespace programs
