#pragma once

#include <QByteArray>
#include <QVector>

#include <random>

#include "tests/doctor/why/denied/actor.h"

/// A random tree of directories, files and links with random owners, modes and access lists.
class GeneratedTree
{
public:
    GeneratedTree(const QByteArray &root, unsigned seed);

    /// Everything in the tree that is not a link.
    const QVector<QByteArray> &entries() const { return m_entries; }
    /// Paths that people ask for: also through links, with "..", missing, or through a file.
    QByteArray askedPath();
    Actor actor();
    int number(int below);

private:
    void fill(const QByteArray &directory, int depth);
    void addLink(const QByteArray &directory);
    void guard(const QByteArray &path);
    bool happens(int percent) { return number(100) < percent; }
    mode_t randomMode();
    const QByteArray &any(const QVector<QByteArray> &paths);

    QByteArray m_root;
    std::mt19937 m_random;
    QVector<QByteArray> m_entries;
    QVector<QByteArray> m_links;
};
