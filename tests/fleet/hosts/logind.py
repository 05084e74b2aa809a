"""A logind for hosts that have no systemd: sessions as a JSON file says them.

A session is {"id", "uid", "user", "type", "class", "locked", "file"}. It takes the place of the
journal, too: dbus-broker does not start where nobody reads what it logs.
"""

import json
import os
import pathlib
import socket
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

NAME = 'org.freedesktop.login1'
JOURNAL = '/run/systemd/journal/socket'
# Where sd_get_sessions(3) looks.
SESSIONS = '/run/systemd/sessions'


class Session(dbus.service.Object):
    """One session object."""

    def __init__(self, bus, described):
        number = described['id']
        # As sd_bus_path_encode(3).
        first = '_%02x' % ord(number[0]) if number[0].isdigit() else number[0]
        self.path = '/org/freedesktop/login1/session/%s%s' % (first, number[1:])
        self.described = described
        super().__init__(bus, self.path)

    @dbus.service.method('org.freedesktop.DBus.Properties', in_signature='s',
                         out_signature='a{sv}')
    def GetAll(self, _interface):
        uid = self.described['uid']
        user = (dbus.UInt32(uid), dbus.ObjectPath('/org/freedesktop/login1/user/_%d' % uid))
        return {'Id': self.described['id'], 'User': dbus.Struct(user, signature='uo'),
                'Name': self.described['user'], 'Type': self.described['type'],
                'Class': self.described.get('class', 'user'), 'State': 'active',
                'LockedHint': bool(self.described.get('locked'))}


class Manager(dbus.service.Object):
    """The manager, which lists them."""

    def __init__(self, bus, sessions):
        super().__init__(bus, '/org/freedesktop/login1')
        self.sessions = sessions

    @dbus.service.method(NAME + '.Manager', out_signature='a(susso)')
    def ListSessions(self):
        return [(one.described['id'], dbus.UInt32(one.described['uid']), one.described['user'],
                 'seat0', dbus.ObjectPath(one.path)) for one in self.sessions]


def read_journal():
    """Reads what is logged, and forgets it."""
    os.makedirs(os.path.dirname(JOURNAL))
    journal = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
    journal.bind(JOURNAL)
    os.chmod(JOURNAL, 0o666)
    GLib.io_add_watch(journal, GLib.IO_IN, lambda *_: bool(journal.recv(65536)) or True)


def main():
    read_journal()
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SystemBus()
    with open(sys.argv[1]) as stream:
        described = json.load(stream)
    os.makedirs(SESSIONS)
    for one in filter(lambda one: one.get('file', True), described):
        pathlib.Path(SESSIONS, one['id']).touch()
    name = dbus.service.BusName(NAME, bus)
    manager = Manager(bus, [Session(bus, one) for one in described])
    GLib.MainLoop().run()
    del name, manager


if __name__ == '__main__':
    main()
