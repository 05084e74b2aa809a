# SPDX-License-Identifier: MIT
"""The graphical sessions of a host, as logind knows them."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json
import os
import subprocess

GRAPHICAL = ('x11', 'wayland', 'mir')
LOGIND = 'org.freedesktop.login1'
MANAGER = '/org/freedesktop/login1'
BUS_LIMIT = 10
SESSIONS = '/run/systemd/sessions'


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


def _environments():
    """By session and user, the environment of the oldest process that has a display and a bus.

    Only processes of that very session and user count: a second session of the user, or the bus of
    another user, is never taken.
    """
    found = {}
    for process in os.listdir('/proc'):
        environment = _environment_of(process) if process.isdigit() else {}
        if environment.get('DISPLAY') or environment.get('WAYLAND_DISPLAY'):
            has_bus = 'DBUS_SESSION_BUS_ADDRESS' in environment
            session = environment.get('XDG_SESSION_ID', ''), _owner_of(process)
            one = (not has_bus, _start_of(process), int(process), environment)
            found[session] = min(found.get(session, one), one)
    return dict((session, one[3]) for session, one in found.items())


def _path_of(number):
    """Where logind has the session, as sd_bus_path_encode(3) spells it."""
    first = '_%02x' % ord(number[0]) if number[0].isdigit() else number[0]
    return '%s/session/%s%s' % (MANAGER, first, number[1:])


def _numbers():
    """Of all sessions, where sd_get_sessions(3) finds them."""
    try:
        names = os.listdir(SESSIONS)
    except OSError:
        return []
    return [name for name in names if _is_there(name)]


def _is_there(number):
    return os.path.isfile(os.path.join(SESSIONS, number))


class GraphicalSessions(object):
    """Asks logind for the graphical sessions of people on this host, while others go on."""

    def __init__(self):
        self._asked = [(number, _properties(_path_of(number))) for number in _numbers()]
        # Each question takes a program. Without files, logind itself says whether there are none.
        self._listed = None if self._asked else _Question(
            MANAGER, LOGIND + '.Manager', 'ListSessions')
        self._environments = _environments()

    def found(self):
        """The sessions by user and number."""
        asked = self._asked
        if self._listed:
            asked = [(one[0], _properties(one[4])) for one in self._listed.answer()]
        sessions = []
        for number, question in asked:
            try:
                sessions += self._graphical(question.answer())
            except Unanswered:
                # It may have ended by now.
                if self._listed or _is_there(number):
                    raise
        return sorted(sessions, key=lambda one: (one.user, one.number))

    def _graphical(self, answer):
        """The session of these properties, or none."""
        properties = dict((name, value.get('data')) for name, value in answer.items())
        is_shown = properties.get('Class') == 'user' and properties.get('Type') in GRAPHICAL
        if not is_shown or properties.get('State') == 'closing':
            return []
        number, uid = properties['Id'], properties['User'][0]
        return [Session(number, properties['Name'], uid, properties['Type'],
                        bool(properties.get('LockedHint')), self._environments.get((number, uid)))]
