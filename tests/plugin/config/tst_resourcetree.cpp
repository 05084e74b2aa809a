#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QResource>
#include <QTest>

#include <array>

#include <dlfcn.h>

namespace {

struct Registration
{
    int version = 0;
    const unsigned char *names = nullptr;
};

/// Filled before any constructor runs.
std::array<Registration, 64> registrations;
std::size_t registrationCount = 0;

/// The scripts are linked into this test; the shell's library has a tree of its own in the folder.
bool isOfThisProgram(const void *address)
{
    Dl_info here = {};
    Dl_info there = {};
    return ::dladdr(&registrations, &here) != 0 && ::dladdr(address, &there) != 0 &&
           here.dli_fbase == there.dli_fbase;
}

/// A name as a resource tree holds it.
QByteArray bigEndian(const QString &text)
{
    QByteArray bytes;
    for (const QChar c : text) {
        bytes.append(static_cast<char>(c.row()));
        bytes.append(static_cast<char>(c.cell()));
    }
    return bytes;
}

} // namespace

/// Notes each registered tree, then registers it.
Q_CORE_EXPORT bool qRegisterResourceData(int version, const unsigned char *tree,
                                         const unsigned char *names, const unsigned char *data)
{
    if (registrationCount < registrations.size())
        registrations[registrationCount++] = {version, names};
    using Function =
        bool (*)(int, const unsigned char *, const unsigned char *, const unsigned char *);
    static const auto real =
        reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "_Z21qRegisterResourceDataiPKhS0_S0_"));
    return real(version, tree, names, data);
}

/// The tree of embedded scripts, as it is registered while the library is loaded.
class ResourceTreeTest : public QObject
{
    Q_OBJECT

private slots:
    static void theTreeHasFormatVersion2()
    {
        // The length of the folder's name, its hash, and the name.
        const QByteArray folder = bigEndian(QStringLiteral("config"));
        QList<int> versions;
        for (std::size_t index = 0; index < registrationCount; ++index) {
            if (isOfThisProgram(registrations[index].names) &&
                QByteArray(reinterpret_cast<const char *>(registrations[index].names) + 6,
                           folder.size()) == folder)
                versions.append(registrations[index].version);
        }
        QCOMPARE(versions, QList<int>{2});
    }

    static void itHoldsTwelveScriptsUncompressed()
    {
        const QStringList scripts =
            QDir(QStringLiteral(":/config")).entryList({QStringLiteral("*.sh")}, QDir::Files);
        QCOMPARE(scripts.size(), 12);
        for (const QString &script : scripts) {
            const QResource resource(QStringLiteral(":/config/") + script);
            QCOMPARE(resource.compressionAlgorithm(), QResource::NoCompression);
            QVERIFY(QByteArray(reinterpret_cast<const char *>(resource.data()),
                               static_cast<int>(resource.size()))
                        .startsWith("#!/bin/bash"));
        }
    }
};

QTEST_GUILESS_MAIN(ResourceTreeTest)
#include "tst_resourcetree.moc"
