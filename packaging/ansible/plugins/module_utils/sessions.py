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
import time

GRAPHICAL = ('x11', 'wayland', 'mir')
LOGIND = 'org.freedesktop.login1'
MANAGER = '/org/freedesktop/login1'
MOST_OUTPUT = 64 * 1024 * 1024
BUS_LIMIT = 10
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


def _busctl(*words):
    command = ['busctl', '--json=short', '--timeout=%d' % BUS_LIMIT, '--system'] + list(words)
    try:
        asked = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        output, errors = asked.communicate()
    except OSError as error:
        raise Unanswered('busctl: %s' % error)
    if asked.returncode != 0:
        raise Unanswered(errors.decode('utf-8', 'replace').strip()[:500])
    try:
        return json.loads(output.decode('utf-8'))
    except ValueError as error:
        raise Unanswered('busctl: %s' % error)


def _properties(path):
    answer = _busctl('call', LOGIND, path, 'org.freedesktop.DBus.Properties', 'GetAll', 's',
                     'org.freedesktop.login1.Session')
    return dict((name, value.get('data')) for name, value in answer['data'][0].items())


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


def graphical_sessions():
    """All graphical sessions of people on this host, by number."""
    listed = _busctl('call', LOGIND, MANAGER, LOGIND + '.Manager', 'ListSessions')['data'][0]
    sessions = []
    for number, uid, user, _seat, path in listed:
        properties = _properties(path)
        if properties.get('Class') != 'user' or properties.get('Type') not in GRAPHICAL:
            continue
        if properties.get('State') == 'closing':
            continue
        sessions.append(Session(number, user, uid, properties['Type'],
                                bool(properties.get('LockedHint')),
                                session_environment(number, uid)))
    return sorted(sessions, key=lambda one: (one.user, one.number))


def program(wanted):
    """The path of assistantctl, or None where it is not installed."""
    candidates = [wanted] if wanted else PROGRAMS
    for path in candidates:
        if os.path.isfile(path) and os.access(path, os.X_OK):
            return path
    return None


class Run(object):
    """What a program said, or that it was ended."""

    def __init__(self, status, lines, errors, ended):
        self.status = status
        self.lines = lines
        self.errors = errors
        self.ended = ended


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


def _objects(output):
    """The JSON objects of the lines, without what is none."""
    objects = []
    for line in output.decode('utf-8', 'replace').split('\n'):
        try:
            parsed = json.loads(line)
        except ValueError:
            continue
        if isinstance(parsed, dict):
            objects.append(parsed)
    return objects


def run_in(session, words, limit):
    """Runs a program as the session's user, with its environment, for at most limit seconds."""
    account = pwd.getpwuid(session.uid)
    environment = dict(session.environment)
    environment.update(HOME=account.pw_dir, USER=account.pw_name, LOGNAME=account.pw_name)
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
    errors = bytes(pipes[started.stderr]).decode('utf-8', 'replace')[:2000]
    return Run(status, _objects(bytes(pipes[started.stdout])), errors, ended)
