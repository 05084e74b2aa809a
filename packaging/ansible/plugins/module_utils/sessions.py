# SPDX-License-Identifier: MIT
"""The graphical sessions of a host, and programs that are run in them."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json
import os
import pwd
import select
import signal
import subprocess
import threading
import time

GRAPHICAL = ('x11', 'wayland', 'mir')
LOGIND = 'org.freedesktop.login1'
MANAGER = '/org/freedesktop/login1'
MOST_OUTPUT = 8 * 1024 * 1024
LONGEST_TEXT = 2000
MOST_PARTS = 200
DEEPEST = 4
BUS_LIMIT = 10
VERSION_LIMIT = 10
# The collection's own; galaxy.yml says the same.
VERSION = '0.1.0'
NOT_STARTED = (KeyError, OSError, subprocess.SubprocessError)
PROGRAMS = ('/usr/bin/assistantctl', '/usr/local/bin/assistantctl')


class Unanswered(Exception):
    """logind did not say what it was asked."""


class Session(object):
    """A graphical session of logind, with the environment of its own processes."""

    def __init__(self, number, user, uid, kind, locked, environment):
        self.number = number
        self.user = user
        self.uid = uid
        self.kind = kind
        self.locked = locked
        self.environment = environment

    def described(self):
        return {'session': self.number, 'user': self.user, 'uid': self.uid, 'type': self.kind}


class _Question(object):
    """A call of logind under way."""

    def __init__(self, path, *words):
        command = ['busctl', '--json=short', '--timeout=%d' % BUS_LIMIT, '--system', 'call',
                   LOGIND, path]
        self._fault = ''
        try:
            self._asked = subprocess.Popen(command + list(words), stdout=subprocess.PIPE,
                                           stderr=subprocess.PIPE)
        except OSError as error:
            self._fault = 'busctl: %s' % error

    def answer(self):
        """Waits for what it gives back."""
        if self._fault:
            raise Unanswered(self._fault)
        output, errors = self._asked.communicate()
        if self._asked.returncode != 0:
            raise Unanswered(errors.decode('utf-8', 'replace').strip()[:500])
        try:
            return json.loads(output.decode('utf-8'))['data'][0]
        except (ValueError, KeyError, IndexError, TypeError) as error:
            raise Unanswered('busctl: %s' % error)


def _properties(path):
    return _Question(path, 'org.freedesktop.DBus.Properties', 'GetAll', 's',
                     'org.freedesktop.login1.Session')


def _environment_of(process):
    try:
        with open('/proc/%s/environ' % process, 'rb') as stream:
            content = stream.read(1024 * 1024)
    except (IOError, OSError):
        return {}
    pairs = [pair.split(b'=', 1) for pair in content.split(b'\0') if b'=' in pair]
    return dict((os.fsdecode(name), os.fsdecode(value)) for name, value in pairs)


def _start_of(process):
    """When it was started, in ticks; it sorts the older ones first."""
    try:
        with open('/proc/%s/stat' % process, 'rb') as stream:
            return int(stream.read().rsplit(b')', 1)[1].split()[19])
    except (IOError, OSError, IndexError, ValueError):
        return 0


def _owner_of(process):
    try:
        return os.stat('/proc/%s' % process).st_uid
    except OSError:
        return -1


def session_environment(number, uid):
    """The environment of the oldest process of the session that has a display and a bus.

    Only processes of that very session and user count: a second session of the user, or the bus of
    another user, is never taken.
    """
    found = []
    for process in os.listdir('/proc'):
        if not process.isdigit() or _owner_of(process) != uid:
            continue
        environment = _environment_of(process)
        has_display = environment.get('DISPLAY') or environment.get('WAYLAND_DISPLAY')
        if environment.get('XDG_SESSION_ID') == number and has_display:
            has_bus = 'DBUS_SESSION_BUS_ADDRESS' in environment
            found.append((not has_bus, _start_of(process), int(process), environment))
    return min(found)[3] if found else None


def _graphical_sessions():
    listed = _Question(MANAGER, LOGIND + '.Manager', 'ListSessions')
    asked = [(number, uid, user, _properties(path))
             for number, uid, user, _seat, path in listed.answer()]
    sessions = []
    for number, uid, user, question in asked:
        properties = dict((name, value.get('data')) for name, value in question.answer().items())
        if properties.get('Class') != 'user' or properties.get('Type') not in GRAPHICAL:
            continue
        if properties.get('State') == 'closing':
            continue
        sessions.append(Session(number, user, uid, properties['Type'],
                                bool(properties.get('LockedHint')),
                                session_environment(number, uid)))
    return sorted(sessions, key=lambda one: (one.user, one.number))


class GraphicalSessions(threading.Thread):
    """Asks logind for all graphical sessions of people on this host, while others go on."""

    def __init__(self):
        super(GraphicalSessions, self).__init__()
        self.daemon = True
        self._sessions = []
        self._fault = None
        self.start()

    def run(self):
        try:
            self._sessions = _graphical_sessions()
        except Exception as fault:  # The caller's, who waits in found().
            self._fault = fault

    def found(self):
        """The sessions by user and number."""
        self.join()
        if self._fault:
            raise self._fault
        return self._sessions


def program(wanted):
    """The path of assistantctl, or None where it is not installed."""
    candidates = [wanted] if wanted else PROGRAMS
    for path in candidates:
        if os.path.isfile(path) and os.access(path, os.X_OK):
            return path
    return None


class Run(object):
    """What a program said, or that it was ended by a limit of "time" or "size"."""

    def __init__(self, status, output, errors, ended):
        self.status = status
        self.output = output.decode('utf-8', 'replace')
        self.errors = errors
        self.ended = ended
        self.lines, self.spoilt = _objects(self.output)

    def of_type(self, *kinds):
        return [line for line in self.lines if line.get('type') in kinds]


def _become(session, account):
    def become():
        os.setsid()
        os.setgid(account.pw_gid)
        os.initgroups(account.pw_name, account.pw_gid)
        os.setuid(session.uid)
        os.umask(0o077)
    return become


def _read(started, limit):
    """Reads until the end, the limit of time or the limit of size; says why it ended early."""
    end = time.monotonic() + limit
    pipes = {started.stdout: bytearray(), started.stderr: bytearray()}
    waiting = list(pipes)
    while waiting:
        left = end - time.monotonic()
        if left <= 0:
            return pipes, 'time'
        for stream in select.select(waiting, [], [], left)[0]:
            part = os.read(stream.fileno(), 65536)
            pipes[stream] += part
            if not part:
                waiting.remove(stream)
            if len(pipes[stream]) > MOST_OUTPUT:
                return pipes, 'size'
    return pipes, ''


def bounded(value, text=LONGEST_TEXT, parts=MOST_PARTS, depth=DEEPEST):
    """The value with long texts, long lists and deep parts cut: one host must not fill the
    controller's memory."""
    if isinstance(value, str):
        return value[:text]
    if isinstance(value, float) and value - value != 0:
        # Infinite, or not a number.
        return None
    if not isinstance(value, (dict, list)):
        return value
    if depth == 0:
        return None
    if isinstance(value, list):
        return [bounded(one, text, parts, depth - 1) for one in value[:parts]]
    return dict((name[:text], bounded(value[name], text, parts, depth - 1))
                for name in list(value)[:parts])


def _objects(output):
    """The JSON objects of the lines, and how many lines are something else."""
    objects = []
    spoilt = 0
    for line in output.split('\n'):
        try:
            parsed = json.loads(line) if line else None
        except (ValueError, RecursionError):
            parsed = ''
        if isinstance(parsed, dict):
            objects.append(parsed)
        elif line:
            spoilt += 1
    return objects, spoilt


def run_in(session, words, limit):
    """Runs a program as the session's user, with its environment, for at most limit seconds."""
    account = pwd.getpwuid(session.uid)
    environment = dict(session.environment)
    environment.update(HOME=account.pw_dir, USER=account.pw_name, LOGNAME=account.pw_name)
    # No setpriv: it would run as root with the user's own LD_PRELOAD.
    started = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, cwd='/', env=environment, close_fds=True,
                               preexec_fn=_become(session, account))
    try:
        pipes, ended = _read(started, limit)
    finally:
        # Also what it has started, and what holds the pipes open.
        try:
            os.killpg(started.pid, signal.SIGKILL)
        except OSError:
            pass
        status = started.wait()
        started.stdout.close()
        started.stderr.close()
    errors = bytes(pipes[started.stderr][:LONGEST_TEXT]).decode('utf-8', 'replace').strip()
    # What is cut off by the limit of size is not worth reading.
    output = b'' if ended == 'size' else bytes(pipes[started.stdout])
    return Run(status, output, errors, ended)


def _version_of(session, path):
    """What the program says of itself, such as "0.1.0"; empty if it does not."""
    run = run_in(session, [path, '--version'], VERSION_LIMIT)
    words = run.output[:LONGEST_TEXT].split()
    return words[-1] if run.status == 0 and words else ''


def why_not(session, path, run, limit, fault=''):
    """The class of a run without a usable answer, and the reason in words."""
    if run.ended == 'time':
        return 'timed_out', 'it took longer than %d s' % limit
    if run.ended == 'size':
        return 'failed', 'it wrote too much'
    said = fault or run.errors or 'its answer is cut or is not the expected JSON'
    version = _version_of(session, path)
    if version in ('', VERSION):
        return 'failed', said
    return 'other_version', 'assistantctl is %s, the collection %s: %s' % (version, VERSION, said)
