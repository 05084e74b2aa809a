"""The collection on a fleet of twenty hosts: "./test fleet", as root."""

import json
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import unittest

from host import Host, session

HERE = pathlib.Path(__file__).parent
PROJECT = HERE.parents[2]
ASSISTANTCTL = PROJECT / 'build/suite/office/assistantctl'
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
RUBBISH = '#!/bin/sh\nyes "{\\"type\\": \\"finding\\"" | head -c 300000000\n'


def with_setting(content, *users, **others):
    files = {'home/%s%s' % (user, SETTING): content for user in users}
    files[CHECKS] = CHECK
    files.update(others)
    return files


def fleet():
    """The hosts with the class that each must get."""
    ann = [session(1, 'ann')]
    hosts = [(Host('well%d' % i, ann, files=with_setting(GOOD, 'ann')), 'ok') for i in range(1, 7)]
    hosts += [(Host('worn%d' % i, ann, files=with_setting(BAD, 'ann')), 'finding')
              for i in range(1, 4)]
    both = with_setting(GOOD, 'ann')
    both['home/bob' + SETTING] = BAD
    return dict((host.name, (host, named)) for host, named in hosts + [
        (Host('wayland', [session(1, 'ann', 'wayland')], files=with_setting(GOOD, 'ann')), 'ok'),
        (Host('two', [session(1, 'ann'), session(2, 'bob')], files=both), 'finding'),
        (Host('greeter', [session('c1', 'ann', **{'class': 'greeter'})],
              files=with_setting(BAD, 'ann')), 'no_session'),
        (Host('empty', files=with_setting(BAD, 'ann')), 'no_session'),
        (Host('terminal', [session(1, 'ann', 'tty')], files=with_setting(BAD, 'ann')),
         'no_session'),
        (Host('locked', [session(1, 'ann', locked=True)], files=with_setting(BAD, 'ann')),
         'locked'),
        (Host('offline'), 'unreachable'),
        (Host('readonly', ann, readonly_home=True, files=with_setting(BAD, 'ann')), 'finding'),
        (Host('hanging', ann, files=dict(with_setting(GOOD, 'ann'), **{'usr/bin/java': HANGS})),
         'check_failed'),
        (Host('bare', ann, installed=False, files=with_setting(BAD, 'ann')), 'not_installed'),
        (Host('stuck', ann, program=HANGS, files=with_setting(BAD, 'ann')), 'timed_out'),
        (Host('loud', ann, program=RUBBISH, files=with_setting(BAD, 'ann')), 'failed'),
    ])


class FleetTest(unittest.TestCase):
    """Plays against all hosts."""

    @classmethod
    def setUpClass(cls):
        cls.top = pathlib.Path(tempfile.mkdtemp(prefix='fleet-'))
        cls.addClassCleanup(shutil.rmtree, cls.top, ignore_errors=True)
        cls.hosts = fleet()
        for name in ('key', 'hostkey'):
            subprocess.run(['ssh-keygen', '-q', '-t', 'ed25519', '-N', '', '-f', cls.top / name],
                           check=True)
        cls._install_collection()
        public_key = (cls.top / 'key.pub').read_text()
        for host, _named in cls.hosts.values():
            host.prepare(cls.top, ASSISTANTCTL, public_key)
            if host.name != 'offline':
                cls.addClassCleanup(host.stop)
                host.start()
        for host, _named in cls.hosts.values():
            if host.process:
                host.wait_until_up()
        cls._write_inventory()

    @classmethod
    def _install_collection(cls):
        build = ['ansible-galaxy', 'collection', 'build', '--output-path', cls.top,
                 PROJECT / 'packaging/ansible']
        subprocess.run(build, check=True, stdout=subprocess.DEVNULL)
        archive = next(cls.top.glob('*.tar.gz'))
        install = ['ansible-galaxy', 'collection', 'install', '--offline', '-p',
                   cls.top / 'collections', archive]
        subprocess.run(install, check=True, stdout=subprocess.DEVNULL)

    @classmethod
    def _write_inventory(cls):
        hosts = {}
        for name, (host, _named) in cls.hosts.items():
            hosts[name] = {
                'ansible_host': name,
                'ansible_ssh_common_args':
                    '-o ProxyCommand="%s" -o UserKnownHostsFile=/dev/null -o LogLevel=ERROR '
                    '-o StrictHostKeyChecking=no -o ControlPath=none' % host.proxy()}
        variables = {'ansible_user': 'root', 'ansible_become': False,
                     'ansible_python_interpreter': '/usr/bin/python3',
                     'ansible_ssh_private_key_file': str(cls.top / 'key')}
        (cls.top / 'inventory.json').write_text(
            json.dumps({'desktops': {'hosts': hosts, 'vars': variables}}))

    def environment(self):
        return dict(os.environ, ANSIBLE_COLLECTIONS_PATH=str(self.top / 'collections'),
                    ANSIBLE_FORKS='5', ANSIBLE_TIMEOUT='20',
                    ANSIBLE_LOCAL_TEMP=str(self.top / 'local'), ANSIBLE_HOME=str(self.top / 'home'),
                    ANSIBLE_SSH_ARGS='', LC_ALL='C.UTF-8')

    def play(self, module, arguments, *options, hosts='desktops'):
        """The module's result of each host that was asked."""
        result = self.top / 'result.json'
        known = ("{{ dict(groups.desktops | zip(groups.desktops | map('extract', hostvars) "
                 "| map(attribute='asked', default={}))) | to_json }}")
        plays = [
            {'hosts': hosts, 'gather_facts': False, 'ignore_unreachable': True, 'tasks': [
                {'office_assistant.desktop.' + module: arguments, 'register': 'asked',
                 'ignore_errors': True}]},
            {'hosts': 'localhost', 'gather_facts': False, 'tasks': [
                {'ansible.builtin.copy': {'content': known, 'dest': str(result), 'mode': '0600'},
                 'check_mode': False}]}]
        self.run_plays(plays, *options)
        return {name: asked for name, asked in json.loads(result.read_text()).items() if asked}

    def run_plays(self, plays, *options):
        book = self.top / 'book.json'
        book.write_text(json.dumps(plays))
        command = ['ansible-playbook', '-i', self.top / 'inventory.json', book] + list(options)
        run = subprocess.run(command, env=self.environment(), stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, timeout=300)
        self.assertIn(b'PLAY RECAP', run.stdout)

    def doctor(self, *options, hosts='desktops', **arguments):
        arguments.setdefault('limit', 15)
        return self.play('doctor', arguments, *options, hosts=hosts)

    @staticmethod
    def class_of(result):
        return 'unreachable' if result.get('unreachable') else result['class']

    def test_1_every_host_gets_its_class(self):
        results = self.doctor(checks=['fleet.setting', 'fleet.hangs'])
        self.assertEqual({name: self.class_of(result) for name, result in results.items()},
                         {name: named for name, (_host, named) in self.hosts.items()})
        self.assertFalse(any(result.get('changed') for result in results.values()))
        two = {one['user']: one['class'] for one in results['two']['sessions']}
        self.assertEqual(two, {'ann': 'ok', 'bob': 'finding'})

    def test_2_a_report_is_of_the_session_and_its_user(self):
        results = self.play('report', {}, hosts='two:wayland:empty')
        reports = results['two']['reports']
        self.assertEqual([(one['user'], one['report']['home']) for one in reports],
                         [('ann', '/home/ann'), ('bob', '/home/bob')])
        facts = results['wayland']['reports'][0]['report']['facts']
        self.assertEqual(facts['environment']['XDG_SESSION_TYPE'], 'wayland')
        self.assertEqual(results['empty']['reports'], [])

    def test_3_check_mode_shows_the_change_and_writes_nothing(self):
        result = self.doctor('--check', '--diff', hosts='worn1', state='fixed',
                             checks=['fleet.setting'])['worn1']
        self.assertTrue(result['changed'])
        self.assertIn('-mode=bad\n+mode=good', result['diff'][0]['prepared'])
        self.assertEqual(self.hosts['worn1'][0].read('home/ann' + SETTING), BAD)

    def test_4_repairs_are_made_once_and_can_be_taken_back(self):
        hosts = 'worn*:two:readonly:well1'
        first = self.doctor(hosts=hosts, state='fixed', checks=['fleet.setting'])
        self.assertEqual({name: result['changed'] for name, result in first.items()},
                         {'worn1': True, 'worn2': True, 'worn3': True, 'two': True,
                          'readonly': False, 'well1': False})
        self.assertIn(first['readonly']['class'], ('refused', 'failed'))
        two = self.hosts['two'][0]
        self.assertEqual(two.read('home/ann' + SETTING), GOOD)
        self.assertEqual(two.read('home/bob' + SETTING), BAD.replace('bad', 'good'))
        second = self.doctor(hosts='worn*:two', state='fixed', checks=['fleet.setting'])
        self.assertEqual({name: (result['changed'], result['class'])
                          for name, result in second.items()},
                         {name: (False, 'ok') for name in ('worn1', 'worn2', 'worn3', 'two')})
        undone = self.doctor(hosts='two', state='undone', user='bob', journal=1)['two']
        self.assertTrue(undone['changed'])
        self.assertEqual(two.read('home/bob' + SETTING), BAD)

    def test_5_a_play_that_is_killed_can_be_run_again(self):
        marker = self.hosts['worn3'][0]
        self.doctor(hosts='worn*', state='undone', user='ann', journal=1)
        book = self.top / 'book.json'
        book.write_text(json.dumps([{
            'hosts': 'worn*', 'gather_facts': False, 'serial': 1, 'tasks': [
                {'office_assistant.desktop.doctor': {
                    'state': 'fixed', 'checks': ['fleet.setting']}}]}]))
        run = subprocess.Popen(
            ['ansible-playbook', '-i', self.top / 'inventory.json', book],
            env=self.environment(),
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, start_new_session=True)
        said = b''
        while b'changed: [worn1]' not in said:
            part = os.read(run.stdout.fileno(), 4096)
            self.assertTrue(part, said)
            said += part
        os.killpg(run.pid, signal.SIGKILL)
        run.wait()
        run.stdout.close()
        self.assertEqual(marker.read('home/ann' + SETTING), BAD)
        again = self.doctor(hosts='worn*', state='fixed', checks=['fleet.setting'])
        self.assertFalse(again['worn1']['changed'])
        self.assertTrue(again['worn3']['changed'])
        for name in ('worn1', 'worn2', 'worn3'):
            self.assertIn('mode=good', self.hosts[name][0].read('home/ann' + SETTING))

    def test_6_the_round_writes_one_page(self):
        page = self.top / 'page.html'
        subprocess.run(['ansible-playbook', '-i', self.top / 'inventory.json',
                        PROJECT / 'packaging/ansible/playbooks/round.yml',
                        '-e', json.dumps({'page': str(page), 'ansible_become': False})],
                       env=self.environment(), stdout=subprocess.DEVNULL, timeout=400)
        text = page.read_text()
        for name in self.hosts:
            self.assertIn('<tr><td>%s<td>' % name, text)
        self.assertIn('unreachable', text)


if __name__ == '__main__':
    unittest.main(verbosity=2, failfast=True)
