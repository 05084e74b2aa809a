"""What asks the hosts: the collection, installed from its archive, an inventory and a key."""

import json
import os
import pathlib
import subprocess

PROJECT = pathlib.Path(__file__).parents[3]
ASSISTANTCTL = PROJECT / 'build/suite/office/assistantctl'


class Controller:
    """Plays against hosts; all of its files are below one directory."""

    def __init__(self, top):
        self.top = top
        self.inventory = top / 'inventory.json'
        for name in ('key', 'hostkey'):
            subprocess.run(['ssh-keygen', '-q', '-t', 'ed25519', '-N', '', '-f', top / name],
                           check=True)
        self.public_key = (top / 'key.pub').read_text()
        self.run('ansible-galaxy', 'collection', 'build', '--output-path', top,
                 PROJECT / 'packaging/ansible', check=True)
        self.run('ansible-galaxy', 'collection', 'install', '--offline', '-p',
                 top / 'collections', next(top.glob('*.tar.gz')), check=True)

    def start(self, hosts, away=()):
        """Starts the hosts but for those that are away, and waits for them."""
        for host in hosts:
            host.prepare(self.top, ASSISTANTCTL, self.public_key)
        for host in hosts:
            if host.name not in away:
                host.start()
        for host in hosts:
            if host.process:
                host.wait_until_up()
        self._write_inventory(hosts)

    def _write_inventory(self, hosts):
        asked = {}
        for host in hosts:
            asked[host.name] = {
                'ansible_host': host.name,
                'ansible_ssh_common_args':
                    '-o ProxyCommand="%s" -o UserKnownHostsFile=/dev/null -o LogLevel=ERROR '
                    '-o StrictHostKeyChecking=no' % host.proxy()}
        variables = {'ansible_user': 'root', 'ansible_become': False,
                     'ansible_python_interpreter': '/usr/bin/python3',
                     'ansible_ssh_private_key_file': str(self.top / 'key')}
        self.inventory.write_text(json.dumps({'desktops': {'hosts': asked, 'vars': variables}}))

    def environment(self, **others):
        """As Ansible is started; nothing of it is in the user's home."""
        own = {'HOME': str(self.top), 'PATH': '/usr/sbin:/usr/bin:/sbin:/bin',
               'ANSIBLE_COLLECTIONS_PATH': str(self.top / 'collections'), 'ANSIBLE_FORKS': '5',
               'ANSIBLE_TIMEOUT': '20', 'ANSIBLE_PIPELINING': 'True',
               'ANSIBLE_SSH_ARGS': '-o ControlPath=none', 'LC_ALL': 'C.UTF-8'}
        return dict(os.environ, **dict(own, **others))

    def run(self, *command, check=False, limit=400, **others):
        """A program's end with its output."""
        return subprocess.run(command, env=self.environment(**others), stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, timeout=limit,
                              check=check)

    def play(self, plays, *options, **others):
        """Runs plays, which are given as Ansible's YAML would be."""
        book = self.top / 'book.json'
        book.write_text(json.dumps(plays))
        return self.run('ansible-playbook', '-i', self.inventory, book, *options, **others)
