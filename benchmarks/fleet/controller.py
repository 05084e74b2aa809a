"""What the answers of many hosts cost the controller: prints the seconds of the table and the
greatest memory of any of Ansible's processes in MiB.

controller.py HOSTS FINDINGS
"""

import json
import os
import pathlib
import resource
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).parent


def plays(place):
    return [
        {'hosts': 'desktops', 'gather_facts': False, 'tasks': [
            {'name': 'ask', 'generated': {'results': place + '/results'}}]},
        {'hosts': 'localhost', 'gather_facts': False, 'tasks': [
            {'name': 'table', 'office_assistant.desktop.table': {
                'results': place + '/results', 'hosts': '{{ groups.desktops }}',
                'dest': place + '/page.html'}}]}]


def main():
    hosts, findings = map(int, sys.argv[1:])
    with tempfile.TemporaryDirectory() as place:
        namespace = pathlib.Path(place, 'ansible_collections/office_assistant')
        namespace.mkdir(parents=True)
        (namespace / 'desktop').symlink_to(HERE.parents[1].absolute() / 'packaging/ansible')
        pathlib.Path(place, 'inventory.json').write_text(json.dumps({'desktops': {
            'hosts': dict.fromkeys('host%04d' % number for number in range(hosts)),
            'vars': {'findings': findings}}}))
        pathlib.Path(place, 'book.json').write_text(json.dumps(plays(place)))
        environment = dict(
            os.environ, HOME=place, ANSIBLE_COLLECTIONS_PATH=place, LC_ALL='C.UTF-8',
            ANSIBLE_ACTION_PLUGINS=str(HERE / 'action'), ANSIBLE_LIBRARY=str(HERE / 'action'),
            ANSIBLE_CALLBACK_PLUGINS=str(HERE / 'callbacks'), TASK_TIMES=place + '/times',
            ANSIBLE_CALLBACKS_ENABLED='tasktimes', PYTHONDONTWRITEBYTECODE='1')
        subprocess.run(['ansible-playbook', '-i', 'inventory.json', 'book.json'], cwd=place,
                       env=environment, check=True, stdout=subprocess.DEVNULL)
        with open(place + '/page.html') as stream:
            assert sum(line.startswith('<tr><td>') for line in stream) == hosts * findings
        seconds = pathlib.Path(place, 'times').read_text().split()[-1]
    print(seconds, resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1024)


if __name__ == '__main__':
    main()
