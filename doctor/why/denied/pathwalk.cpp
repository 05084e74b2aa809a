#include "doctor/why/denied/pathwalk.h"

#include <QList>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <deque>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include "doctor/why/denied/ending.h"
#include "doctor/why/denied/lookups.h"

namespace doctor {

namespace {

constexpr int mostLinks = 40;
constexpr int mostComponents = 4096;
constexpr int longestPlace = 4 * PATH_MAX;
constexpr unsigned long noLinks = 0x2000; // ST_NOSYMFOLLOW of newer headers

QByteArray below(const QByteArray &directory, const QByteArray &name)
{
    return directory.endsWith('/') ? directory + name : directory + '/' + name;
}

class Walk
{
public:
    Walk(Access access, const Credentials &who) : m_access(access), m_who(who) {}
    Passage along(const QByteArray &path);

private:
    bool begin(bool atRoot);
    void plan(const QByteArray &path);
    bool step();
    bool pass();
    bool ascend();
    bool follow(Component &link, const Descriptor &opened);
    bool followByKernel(Component &link);
    bool enter(Descriptor opened, const Component &component);
    int remember(const Component &component);
    bool isTooLong(const Component &component) const;
    bool stop(Obstacle obstacle, int error = 0);
    bool stopAt(const QByteArray &missing, int error);
    void arrive();
    Component &here() { return m_passage.chain[m_hereIndex]; }

    Access m_access;
    const Credentials &m_who;
    Passage m_passage;
    /// Where the walk is, open, and its place in the chain.
    Descriptor m_here;
    int m_hereIndex = 0;
    std::deque<QByteArray> m_names;
    /// A slash at the end asks for a directory.
    bool m_endsInDirectory = false;
    int m_links = 0;
};

bool Walk::stop(Obstacle obstacle, int error)
{
    m_passage.obstacle = obstacle;
    m_passage.error = error;
    return false;
}

/// A name that cannot be opened, in a directory that can be passed.
bool Walk::stopAt(const QByteArray &missing, int error)
{
    Component component;
    component.path = missing;
    component.exists = error == EACCES || error == EPERM;
    m_passage.blocker = m_passage.chain.size();
    m_passage.chain.append(component);
    switch (error) {
    case ENOENT:
    case ESRCH:
        return stop(Obstacle::Missing);
    case ENAMETOOLONG:
        return stop(Obstacle::NameTooLong);
    case EACCES:
    case EPERM:
        return stop(Obstacle::Unexplained, error);
    default:
        return stop(Obstacle::Undecided, error);
    }
}

/// What is met again, behind ".." or in a loop, stands once in the chain.
int Walk::remember(const Component &component)
{
    QVector<Component> &chain = m_passage.chain;
    const auto known =
        std::find_if(chain.begin(), chain.end(), [&component](const Component &seen) {
            return seen.path == component.path && seen.inode == component.inode &&
                   seen.device == component.device;
        });
    const auto index = static_cast<int>(known - chain.begin());
    if (known == chain.end())
        chain.append(component);
    return index;
}

bool Walk::isTooLong(const Component &component) const
{
    return m_passage.chain.size() > mostComponents || component.path.size() > longestPlace;
}

bool Walk::enter(Descriptor opened, const Component &component)
{
    m_here = std::move(opened);
    m_hereIndex = remember(component);
    m_passage.blocker = m_hereIndex;
    return isTooLong(component) ? stop(Obstacle::Undecided, E2BIG) : true;
}

bool Walk::begin(bool atRoot)
{
    Descriptor opened(::open(atRoot ? "/" : ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    Component component;
    component.path =
        atRoot ? QByteArray("/") : linkTarget(AT_FDCWD, descriptorPath(opened.number()));
    if (!opened.isOpen())
        return stopAt(atRoot ? "/" : ".", errno);
    if (const int error = inspect(opened.number(), component))
        return stopAt(component.path, error);
    return enter(std::move(opened), component);
}

void Walk::plan(const QByteArray &path)
{
    const bool isLast = m_names.empty();
    QList<QByteArray> names = path.split('/');
    names.removeAll(QByteArray());
    m_names.insert(m_names.begin(), names.begin(), names.end());
    m_endsInDirectory = m_endsInDirectory || (isLast && path.endsWith('/'));
}

/// Whether the directory that the walk is in lets names in it be looked up.
bool Walk::pass()
{
    Component &directory = here();
    m_passage.blocker = m_hereIndex;
    if (!S_ISDIR(directory.guard.mode)) {
        stop(Obstacle::NotDirectory);
    } else {
        directory.needed |= runRight;
        m_passage.decision = decide(directory.guard, runRight, m_who);
        if (m_passage.decision.granted)
            return true;
        stop(Obstacle::Rights);
    }
    return false;
}

bool Walk::ascend()
{
    Descriptor opened(::openat(m_here.number(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
    Component component;
    const QByteArray &path = here().path;
    component.path = path.left(std::max(1, int(path.lastIndexOf('/'))));
    if (!opened.isOpen())
        return stopAt(component.path, errno);
    if (const int error = inspect(opened.number(), component))
        return stopAt(component.path, error);
    return enter(std::move(opened), component);
}

bool Walk::step()
{
    const QByteArray name = m_names.front();
    m_names.pop_front();
    if (name == ".")
        return true;
    if (name == "..")
        return ascend();
    Component component;
    component.path = below(here().path, name);
    Descriptor opened = openedAt(m_here.number(), name);
    if (!opened.isOpen())
        return stopAt(component.path, errno);
    if (const int error = inspect(opened.number(), component))
        return stopAt(component.path, error);
    return S_ISLNK(component.guard.mode) ? follow(component, opened)
                                         : enter(std::move(opened), component);
}

/// See proc(5), protected_symlinks.
bool isProtected(const Component &link, const Guard &directory, const Credentials &who)
{
    constexpr mode_t shared = S_ISVTX | S_IWOTH;
    return who.protectsLinks && (directory.mode & shared) == shared &&
           link.guard.owner != who.user && link.guard.owner != directory.owner;
}

bool Walk::follow(Component &link, const Descriptor &opened)
{
    struct statfs system = {};
    const bool isKnown = ::fstatfs(m_here.number(), &system) == 0;
    link.target = linkTarget(opened.number(), {});
    m_passage.blocker = remember(link);
    if (isTooLong(link))
        return stop(Obstacle::Undecided, E2BIG);
    if (++m_links > mostLinks)
        return stop(Obstacle::LinkLoop);
    // The kernel asks this of the last name only.
    if (m_names.empty() && isProtected(link, here().guard, m_who))
        return stop(Obstacle::LinkProtected);
    if (isKnown && (static_cast<unsigned long>(system.f_flags) & noLinks) != 0)
        return stop(Obstacle::LinksDisabled);
    if (isKnown && system.f_type == PROC_SUPER_MAGIC)
        return followByKernel(link);
    if (link.target.isEmpty())
        return stop(Obstacle::Undecided, EIO);
    plan(link.target);
    return !link.target.startsWith('/') || begin(true);
}

/// Links of processes lead elsewhere than their texts say.
bool Walk::followByKernel(Component &link)
{
    const QByteArray name = link.path.mid(link.path.lastIndexOf('/') + 1);
    Descriptor opened(::openat(m_here.number(), name.constData(), O_PATH | O_CLOEXEC));
    if (!opened.isOpen()) {
        if (errno == EACCES || errno == EPERM)
            return stop(Obstacle::ProcessPrivate);
        return stop(errno == ENOENT || errno == ESRCH ? Obstacle::Missing : Obstacle::Undecided,
                    errno);
    }
    Component component;
    component.path = linkTarget(AT_FDCWD, descriptorPath(opened.number()));
    if (const int error = inspect(opened.number(), component))
        return stop(Obstacle::Undecided, error);
    return enter(std::move(opened), component);
}

void Walk::arrive()
{
    if (m_endsInDirectory && !S_ISDIR(here().guard.mode))
        stop(Obstacle::NotDirectory);
    else
        judgeEnding(m_passage, m_hereIndex, m_here.number(), m_access, m_who);
    m_passage.blocker = m_hereIndex;
}

Passage Walk::along(const QByteArray &path)
{
    if (path.isEmpty() || path.size() >= PATH_MAX) {
        stopAt(path.left(NAME_MAX), path.isEmpty() ? ENOENT : ENAMETOOLONG);
        return m_passage;
    }
    plan(path);
    bool goesOn = begin(path.startsWith('/'));
    while (goesOn && !m_names.empty())
        goesOn = pass() && step();
    if (goesOn)
        arrive();
    return m_passage;
}

} // namespace

Passage walkPath(const QByteArray &path, Access access, const Credentials &who)
{
    return Walk(access, who).along(path);
}

} // namespace doctor
