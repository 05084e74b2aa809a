#pragma once

#include <QApplication>

#include <array>

namespace helio {

/// The application object of a program without windows. It needs no display, and file dialogs
/// are answered by DialogAnswers.
///
/// The platform is chosen by arguments and not by environment variables, which the programs that
/// the library starts would inherit.
class HeadlessApplication : public QApplication
{
    Q_OBJECT

public:
    explicit HeadlessApplication(char *programName);

private:
    struct Arguments
    {
        explicit Arguments(char *programName);

        std::array<char *, 6> values;
        int count;
    };

    /// Keeps back one of Qt's messages for as long as it lives.
    class QuietStart
    {
    public:
        QuietStart();
        ~QuietStart();
        Q_DISABLE_COPY(QuietStart)
    };

    HeadlessApplication(Arguments &arguments, const QuietStart &quietStart);
    static Arguments &arguments(char *programName);
};

} // namespace helio
