"""What one host costs: prints the medians of the module, of the doctor alone and of Ansible's ping.

Needs root, for a host of tests/fleet/hosts. All three are measured in turn.
"""

import pathlib
import shutil
import statistics
import sys
import tempfile

HERE = pathlib.Path(__file__).parent
sys.path.insert(0, str(HERE.parents[1] / 'tests/fleet/hosts'))

from controller import Controller  # noqa: E402
from host import Host, session  # noqa: E402

ROUNDS = 15


def doctor_alone(host):
    """The median seconds of the doctor in the session, with the session's own environment."""
    display = host.inside('pgrep', '-f', '^sleep infinity').split()[0]
    times = []
    for _round in range(ROUNDS):
        run = ('tr "\\0" "\\n" < /proc/%s/environ > /tmp/environment && '
               'mapfile -t own < /tmp/environment && begin=$(date +%%s%%N) && '
               '{ setpriv --reuid 2001 --regid 2001 --init-groups env -i "${own[@]}" '
               'assistantctl doctor --json > /dev/null || [ $? -lt 4 ]; } && '
               'echo $(($(date +%%s%%N) - begin))' % display)
        times.append(int(host.inside('bash', '-c', run)) / 1e9)
    return statistics.median(times)


def main():
    top = pathlib.Path(tempfile.mkdtemp(prefix='fleet-'))
    host = Host('desk', [session(1, 'ann')])
    try:
        controller = Controller(top)
        controller.start([host])
        tasks = [{'name': 'ping', 'ansible.builtin.ping': {}},
                 {'name': 'doctor', 'office_assistant.desktop.doctor': {}}]
        alone = doctor_alone(host)
        times = top / 'times'
        controller.play([{'hosts': 'desk', 'gather_facts': False, 'tasks': tasks * (ROUNDS + 1)}],
                        check=True, TASK_TIMES=str(times),
                        ANSIBLE_CALLBACK_PLUGINS=str(HERE / 'callbacks'),
                        ANSIBLE_CALLBACKS_ENABLED='tasktimes',
                        ANSIBLE_SSH_ARGS='-o ControlMaster=auto -o ControlPersist=60s')
        measured = [line.split() for line in times.read_text().splitlines()]
        seconds = dict((name, [float(value) for each, value in measured if each == name][1:])
                       for name in ('ping', 'doctor'))
        print(statistics.median(seconds['doctor']), alone, statistics.median(seconds['ping']))
    finally:
        host.stop()
        shutil.rmtree(top, ignore_errors=True)


if __name__ == '__main__':
    main()
