"""Makes the table of many hosts' results; prints the seconds and the peak of memory in MiB.

fleettable.py PLUGINS HOSTS FINDINGS
"""

import random
import resource
import sys
import time

sys.path.insert(0, sys.argv[1])

from doctor_table import doctor_table  # noqa: E402


def results(hosts, findings):
    """As the module answers, each host with texts of its own."""
    chance = random.Random(1)
    for number in range(hosts):
        yield 'host%04d' % number, {'doctor': {'class': 'finding', 'sessions': [{
            'user': 'ann', 'class': 'finding', 'findings': [{
                'check': 'check.%d' % chance.randrange(300), 'state': 'warning',
                'text': '/home/user%d/.config/file%d has grown to %d MiB: starting takes long.'
                        % (number, finding, chance.randrange(100))}
                for finding in range(findings)]}]}}


def main():
    variables = dict(results(int(sys.argv[2]), int(sys.argv[3])))
    started = time.monotonic()
    page = doctor_table(variables, sorted(variables), form='html')
    seconds = time.monotonic() - started
    assert page.count('<tr>') > int(sys.argv[2]) * int(sys.argv[3])
    print(seconds, resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024)


if __name__ == '__main__':
    main()
