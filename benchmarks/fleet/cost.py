"""What one host costs: prints the medians of the module, of the doctor alone, of Ansible's ping and
of the module under the same setting as the ping.

Needs root, for a host of tests/fleet/hosts. All are measured in turn, in each order equally
often: what ran before warms or cools what comes after.
"""

import itertools
import pathlib
import shutil
import statistics
import sys
import tempfile

HERE = pathlib.Path(__file__).parent
sys.path.insert(0, str(HERE.parents[1] / 'tests/fleet/hosts'))

from controller import Controller  # noqa: E402
from host import Host, session  # noqa: E402

ROUNDS = 24


# Prints the nanoseconds of the doctor in the session, with the session's own environment.
ALONE = r'''
mapfile -d "" -t own < /proc/$(pgrep --oldest --full '^sleep infinity')/environ
begin=$(date +%s%N)
setpriv --reuid 2001 --regid 2001 --init-groups env -i "${own[@]}" \
    assistantctl doctor --json > /dev/null || [ $? -lt 4 ] || exit
echo $(($(date +%s%N) - begin))
'''


def tasks(results):
    """One round. The doctor is asked as playbooks/round.yml does it, all else as Ansible does."""
    return [
        {'name': 'alone', 'ansible.builtin.shell': {'cmd': ALONE, 'executable': '/bin/bash'}},
        {'name': 'ping', 'ansible.builtin.ping': {}},
        {'name': 'doctor', 'office_assistant.desktop.doctor': {'results': str(results)},
         'vars': {'ansible_pipelining': True}},
        {'name': 'same', 'office_assistant.desktop.doctor': {'results': str(results)}},
    ]


def median(lines, name, column):
    # The first round also makes connections and caches.
    return statistics.median([float(line[column]) for line in lines if line[0] == name][1:])


def main():
    top = pathlib.Path(tempfile.mkdtemp(prefix='fleet-'))
    host = Host('desk', [session(1, 'ann')])
    try:
        controller = Controller(top)
        controller.start([host])
        times = top / 'times'
        one = tasks(top / 'results')
        orders = itertools.islice(itertools.cycle(itertools.permutations(one)), ROUNDS)
        asked = one + list(itertools.chain.from_iterable(orders))
        controller.play([{'hosts': 'desk', 'gather_facts': False, 'tasks': asked}],
                        check=True, TASK_TIMES=str(times), ANSIBLE_PIPELINING='False',
                        ANSIBLE_CALLBACK_PLUGINS=str(HERE / 'callbacks'),
                        ANSIBLE_CALLBACKS_ENABLED='tasktimes',
                        ANSIBLE_SSH_ARGS='-o ControlMaster=auto -o ControlPersist=60s')
        lines = [line.split() for line in times.read_text().splitlines()]
        print(median(lines, 'doctor', 1), median(lines, 'alone', 2) / 1e9,
              median(lines, 'ping', 1), median(lines, 'same', 1))
    finally:
        host.stop()
        shutil.rmtree(top, ignore_errors=True)


if __name__ == '__main__':
    main()
