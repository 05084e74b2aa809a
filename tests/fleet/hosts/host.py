"""Hosts of a fleet on one machine: each with its own root, network, logind, sessions and ssh.

They need root, overlayfs and namespaces; nothing outside of the given directory is changed.
"""

import json
import os
import pathlib
import shutil
import signal
import subprocess
import time

HERE = pathlib.Path(__file__).parent
USERS = {'ann': 2001, 'bob': 2002}
PATIENCE = 60

BUS = '''<busconfig><type>system</type><listen>unix:path=/run/dbus/system_bus_socket</listen>
<policy context="default"><allow user="*"/><allow own="*"/><allow send_destination="*"/>
<allow receive_sender="*"/></policy></busconfig>'''
SSHD = '''Port 22
ListenAddress 127.0.0.1
HostKey /run/host/hostkey
AuthorizedKeysFile /run/host/authorized
StrictModes no
PermitRootLogin yes
UsePAM no
PidFile none
Subsystem sftp internal-sftp
'''

# What a session runs, by its kind of bus. The broker is the real one with the real launcher, which
# systemd would start in this way; it cannot start services here.
BODIES = {
    'dbus-daemon': 'dbus-run-session -- sleep infinity',
    'dbus-broker': """bash -c '
        bus=$XDG_RUNTIME_DIR/bus
        until [ -S /run/systemd/journal/socket ]; do sleep 0.1; done
        systemd-socket-activate -E XDG_RUNTIME_DIR -l "$bus" dbus-broker-launch --scope user &
        export DBUS_SESSION_BUS_ADDRESS=unix:path=$bus
        until busctl --user list > /dev/null; do sleep 0.1; done
        exec sleep infinity
    '""",
}


def session(number, user, kind='x11', **others):
    """A session as logind knows it."""
    return dict(id=str(number), uid=USERS[user], user=user, type=kind, **others)


class Host:
    """One host. Its processes live until stop()."""

    def __init__(self, name, sessions=(), installed=True, program=None, readonly_home=False,
                 files=None):
        self.name = name
        self.sessions = list(sessions)
        self.installed = installed
        self.program = program
        self.readonly_home = readonly_home
        self.files = files or {}
        self.process = None

    def prepare(self, top, assistantctl, public_key):
        """Makes the directories and files of the host."""
        self.directory = top / self.name
        upper = self.directory / 'upper'
        for part in ('upper', 'work', 'root', 'host'):
            (self.directory / part).mkdir(parents=True)
        self._write_files(upper, assistantctl)
        host = self.directory / 'host'
        (host / 'sessions.json').write_text(json.dumps(self.sessions))
        (host / 'sessions.sh').write_text(''.join(map(self._start_of, self.sessions)))
        (host / 'bus.conf').write_text(BUS)
        (host / 'sshd.conf').write_text(SSHD)
        (host / 'authorized').write_text(public_key)
        shutil.copy(HERE / 'logind.py', host)
        shutil.copy(top / 'hostkey', host)
        (host / 'hostkey').chmod(0o600)
        if self.readonly_home:
            (self.directory / 'readonlyhome').touch()

    def _write_files(self, upper, assistantctl):
        passwd = pathlib.Path('/etc/passwd').read_text()
        group = pathlib.Path('/etc/group').read_text()
        for user, uid in USERS.items():
            passwd += '%s:x:%d:%d::/home/%s:/bin/bash\n' % (user, uid, uid, user)
            group += '%s:x:%d:\n' % (user, uid)
            home = upper / 'home' / user
            home.mkdir(parents=True)
            os.chown(home, uid, uid)
        (upper / 'etc').mkdir()
        (upper / 'etc/passwd').write_text(passwd)
        (upper / 'etc/group').write_text(group)
        for path, content in self.files.items():
            file = upper / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(content)
            if path.endswith(('.sh', '/java')):
                file.chmod(0o755)
            self._give_to_owner(upper, file)
        (upper / 'usr/bin').mkdir(parents=True, exist_ok=True)
        program = upper / 'usr/bin/assistantctl'
        if self.program:
            program.write_text(self.program)
            program.chmod(0o755)
        elif self.installed:
            program.symlink_to(assistantctl)

    def _give_to_owner(self, upper, file):
        """Files below a home belong to its user."""
        parts = file.relative_to(upper).parts
        if parts[0] != 'home':
            return
        uid = USERS[parts[1]]
        for depth in range(3, len(parts) + 1):
            os.chown(upper.joinpath(*parts[:depth]), uid, uid)

    def _start_of(self, one):
        """A real message bus, and a process with the environment that a desktop sets."""
        if one['type'] == 'tty':
            return ''
        display = 'WAYLAND_DISPLAY=wayland-0' if one['type'] == 'wayland' else 'DISPLAY=:0'
        words = dict(one, display=display, body=BODIES[one.get('bus', 'dbus-daemon')])
        return ('mkdir -p /run/user/%(uid)s && chown %(uid)s:%(uid)s /run/user/%(uid)s && '
                'chmod 700 /run/user/%(uid)s\n'
                'setpriv --reuid %(uid)s --regid %(uid)s --clear-groups env -i '
                'PATH=/usr/bin:/bin HOME=/home/%(user)s USER=%(user)s LOGNAME=%(user)s '
                'LANG=C.UTF-8 XDG_SESSION_ID=%(id)s XDG_SESSION_TYPE=%(type)s '
                'XDG_RUNTIME_DIR=/run/user/%(uid)s XDG_CURRENT_DESKTOP=X-Test %(display)s '
                '%(body)s &\n' % words)

    def start(self):
        """Starts the host; wait_until_up() says when it answers."""
        root = self.directory / 'root'
        script = ('mount -t overlay overlay -o lowerdir=/,upperdir=%(d)s/upper,workdir=%(d)s/work '
                  '%(r)s && exec bash %(h)s/inside.sh %(d)s'
                  % {'d': self.directory, 'r': root, 'h': HERE})
        with open(self.directory / 'log', 'w') as log:
            self.process = subprocess.Popen(
                ['unshare', '--mount', '--net', '--uts', '--pid', '--fork', '--kill-child',
                 '--propagation', 'private', 'bash', '-c', script],
                stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True)

    def first_process(self):
        """The number of the host's first process outside of it."""
        children = pathlib.Path('/proc/%d/task/%d/children'
                                % (self.process.pid, self.process.pid)).read_text().split()
        return int(children[0]) if children else None

    def wait_until_up(self):
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            if self.first_process() and self._answers():
                return
            time.sleep(0.1)
        raise TimeoutError('%s: %s' % (self.name, (self.directory / 'log').read_text()))

    def _enter(self):
        return ['nsenter', '-t', str(self.first_process()), '--mount', '--net', '--pid', 'chroot',
                str(self.directory / 'root')]

    def inside(self, *command):
        """What a program prints that root runs in the host."""
        return subprocess.run(self._enter() + list(command), check=True, stdout=subprocess.PIPE,
                              timeout=PATIENCE).stdout.decode()

    def _answers(self):
        """Whether ssh listens, logind has its name and every session has its bus."""
        asked = ('busctl --system --timeout=2 call org.freedesktop.login1 /org/freedesktop/login1 '
                 'org.freedesktop.login1.Manager ListSessions && '
                 'busybox nc -w 2 127.0.0.1 22 < /dev/null | grep -q SSH && '
                 '[ "$(pgrep -c -f "^sleep infinity")" = %d ]'
                 % len([one for one in self.sessions if one['type'] != 'tty']))
        return subprocess.run(self._enter() + ['bash', '-c', asked], stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode == 0

    def read(self, path):
        """A file of the host's upper layer."""
        return (self.directory / 'upper' / path).read_text()

    def proxy(self):
        """The command that reaches the host's ssh."""
        return ('nsenter -t %d --net busybox nc 127.0.0.1 22' % self.first_process()
                if self.process else 'false')

    def stop(self):
        if self.process and self.process.poll() is None:
            os.killpg(self.process.pid, signal.SIGKILL)
            self.process.wait()
        self.process = None
