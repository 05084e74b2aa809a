"""The hosts of the tests: what is wrong on each, and the class that it must get."""

import json

from controller import ASSISTANTCTL
from host import Host, session

CHECKS = 'etc/office-assistant/checks.d/fleet.json'
SETTING = '/.config/fleet.ini'
GOOD = '[Fleet]\nmode=good\n'
BAD = '# mine\n[Fleet]\nmode=bad\n'
CHECK = json.dumps({'checks': [
    {
        'id': 'fleet.setting',
        'title': 'The setting is good',
        'look': {'ini': '$HOME' + SETTING, 'section': 'Fleet', 'key': 'mode',
                 'value': {'not': 'good'}},
        'finding': {'text': 'The setting is {value}.'},
        'repairs': [{'id': 'set', 'title': 'Set it', 'steps': [
            {'set': '{path}', 'format': 'ini', 'key': ['Fleet', 'mode'], 'value': 'good'}]}],
    },
    {
        'id': 'fleet.hangs',
        'title': 'Java answers',
        'limit': '2 s',
        'when': {'file': '/usr/bin/java', 'exists': True},
        'look': {'programVersion': 'java', 'version': {'under': '1'}},
        'finding': {'text': 'Java is old.'},
    },
]})
HANGS = '#!/bin/sh\nsleep 1000\n'
RUBBISH = '#!/bin/sh\nyes "{\\"type\\": \\"finding\\"" | head -c 1000000000\n'
HOSTILE_TEXT = '=cmd|x <script>alert(1)</script>'
HOSTILE = r'''#!/bin/sh
printf '{"type": "finding", "check": "=1+1", "state": "bad", "text": "%s\\n\\u001b[31m"}\n'
head -c 100000 /dev/zero | tr '\0' '['
echo
echo '{"type": "finding", "check": "{{ lookup(\"pipe\", \"echo evaluated\") }}", "text": 1e999}'
echo '{"type": "summary"}'
exit 1
''' % HOSTILE_TEXT
OLDER = '''#!/bin/sh
[ "$1" != --version ] || { echo assistantctl 0.0.9; exit; }
echo "assistantctl doctor: there is no option --json" >&2
exit 2
'''
NEWER = '''#!/bin/sh
[ "$1" != --version ] || { echo assistantctl 9.0.0; exit; }
echo '{"type": "progress", "share": 0.5}'
%s "$@" | sed 's/"type":"finding"/"type":"finding","advice":{"text":"more"}/'
exit 1
''' % ASSISTANTCTL
# Says who and where it is.
WITNESS = r'''#!/bin/bash
bus=$(busctl --user call org.freedesktop.DBus / org.freedesktop.DBus GetId | cut -d\" -f2)
printf '{"type": "finding", "check": "who", "state": "note", "text": "%s"}\n{"type": "summary"}\n' \
    "$(id -u) $(id -G) $HOME $XDG_SESSION_ID $XDG_SESSION_TYPE $bus"
'''
MARKED = '=cmd|<b>away'


def with_setting(content, *users, **others):
    files = {'home/%s%s' % (user, SETTING): content for user in users}
    files[CHECKS] = CHECK
    files.update(others)
    return files


def fleet():
    """The hosts with the class that each must get."""
    ann = [session(1, 'ann')]
    hosts = [(Host('well%d' % i, ann, files=with_setting(GOOD, 'ann')), 'ok') for i in range(1, 4)]
    hosts += [(Host('worn%d' % i, ann, files=with_setting(BAD, 'ann')), 'finding')
              for i in range(1, 4)]
    both = with_setting(GOOD, 'ann', **{'opt/witness.sh': WITNESS})
    both['home/bob' + SETTING] = BAD
    witnessed = with_setting(BAD, 'ann', **{'opt/witness.sh': WITNESS})
    return dict((host.name, (host, named)) for host, named in hosts + [
        (Host('wayland', [session(1, 'ann', 'wayland')], files=with_setting(GOOD, 'ann')), 'ok'),
        (Host('fileless', [session(1, 'ann', file=False)], files=with_setting(BAD, 'ann')),
         'finding'),
        (Host('two', [session(1, 'ann'), session(2, 'bob')], files=both), 'finding'),
        (Host('twice', [session(1, 'ann'), session(3, 'ann', 'wayland')], files=witnessed),
         'finding'),
        (Host('broker', [session(1, 'ann', bus='dbus-broker')], files=witnessed), 'finding'),
        (Host('greeter', [session('c1', 'ann', **{'class': 'greeter'})],
              files=with_setting(BAD, 'ann')), 'no_session'),
        (Host('empty', files=with_setting(BAD, 'ann')), 'no_session'),
        (Host('terminal', [session(1, 'ann', 'tty')], files=with_setting(BAD, 'ann')),
         'no_session'),
        (Host('locked', [session(1, 'ann', locked=True)], files=with_setting(BAD, 'ann')),
         'locked'),
        (Host('offline'), 'unreachable'),
        (Host(MARKED), 'unreachable'),
        (Host('readonly', ann, readonly_home=True, files=with_setting(BAD, 'ann')), 'finding'),
        (Host('hanging', ann, files=dict(with_setting(GOOD, 'ann'), **{'usr/bin/java': HANGS})),
         'check_failed'),
        (Host('bare', ann, installed=False, files=with_setting(BAD, 'ann')), 'not_installed'),
        (Host('stuck', ann, program=HANGS, files=with_setting(BAD, 'ann')), 'timed_out'),
        (Host('loud', ann, program=RUBBISH, files=with_setting(BAD, 'ann')), 'failed'),
        (Host('hostile', ann, program=HOSTILE), 'finding'),
        (Host('older', ann, program=OLDER), 'other_version'),
        (Host('newer', ann, program=NEWER, files=with_setting(BAD, 'ann')), 'finding'),
    ])
