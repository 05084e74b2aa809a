# SPDX-License-Identifier: MIT
"""The graphical sessions of a host, as logind knows them."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import os

GRAPHICAL = ('x11', 'wayland', 'mir')


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


def _graphical(properties, environments):
    """The session of these properties, or none."""
    values = dict((name, value.get('data')) for name, value in properties.items())
    is_shown = values.get('Class') == 'user' and values.get('Type') in GRAPHICAL
    if not is_shown or values.get('State') == 'closing':
        return []
    number, uid = values['Id'], values['User'][0]
    return [Session(number, values['Name'], uid, values['Type'],
                    bool(values.get('LockedHint')), environments.get((number, uid)))]


def graphical_sessions(queries):
    """Those of people, by user and number, from what logind is asked."""
    environments = _environments()
    sessions = []
    for properties in queries.answers():
        sessions += _graphical(properties, environments)
    return sorted(sessions, key=lambda one: (one.user, one.number))
