#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

namespace programs {

/// The dynamic section of a program or shared library. The file is only read, never run or mapped.
struct ElfFile
{
    enum class State {
        Good,
        Unreadable,
        Foreign, ///< not an ELF file
        Broken
    };

    State state = State::Unreadable;
    int machine = 0; ///< processor, as in elf.h
    int width = 0;   ///< ELFCLASS32 or ELFCLASS64
    QStringList needed;
    QString name;                              ///< DT_SONAME; may be empty
    QStringList earlySearch;                   ///< DT_RPATH
    QStringList lateSearch;                    ///< DT_RUNPATH
    QMap<QString, QStringList> neededVersions; ///< by library
    QSet<QString> definedVersions;

    bool isForSameMachine(const ElfFile &other) const;
};

/// Reads from a descriptor, which stays open.
ElfFile readElf(int descriptor);

/// Reads the file at @p path; anything but a regular file counts as unreadable.
ElfFile readElf(const QString &path);

} // namespace programs
