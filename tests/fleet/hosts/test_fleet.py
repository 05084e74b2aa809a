"""The collection on a fleet of hosts: "./test fleet", as root."""

import csv
import io
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import unittest

from controller import PROJECT, Controller
from fleet import BAD, GOOD, MARKED, SETTING, fleet

# A repository of the administrator with play and collection, and the command of the guide.
PULL = '''
export HOME=/root LC_ALL=C.UTF-8 PATH=/usr/sbin:/usr/bin:/sbin:/bin
collections=/srv/desktops/collections/ansible_collections/office_assistant
mkdir -p "$collections"
cp -r %s/packaging/ansible "$collections/desktop"
cp "$collections/desktop/playbooks/pull.yml" /srv/desktops
cd /srv/desktops
git init --quiet && git add --all
git -c user.name=a -c user.email=a@example.org commit --quiet --message=play
ansible-pull --url /srv/desktops --directory /root/desktops pull.yml > /dev/null
'''


class FleetTest(unittest.TestCase):
    """Plays against all hosts."""

    @classmethod
    def setUpClass(cls):
        cls.top = pathlib.Path(tempfile.mkdtemp(prefix='fleet-'))
        cls.addClassCleanup(shutil.rmtree, cls.top, ignore_errors=True)
        cls.hosts = fleet()
        hosts = [host for host, _named in cls.hosts.values()]
        for host in hosts:
            cls.addClassCleanup(host.stop)
        cls.controller = Controller(cls.top)
        cls.controller.start(hosts, away=('offline', MARKED))

    def play(self, module, arguments, *options, hosts='desktops'):
        """The module's result of each host that was asked."""
        result = self.top / 'result.json'
        known = ("{{ dict(groups.desktops | zip(groups.desktops | map('extract', hostvars) "
                 "| map(attribute='asked', default={}))) | to_json }}")
        run = self.controller.play([
            {'hosts': hosts, 'gather_facts': False, 'ignore_unreachable': True, 'tasks': [
                {'office_assistant.desktop.' + module: arguments, 'register': 'asked',
                 'ignore_errors': True}]},
            {'hosts': 'localhost', 'gather_facts': False, 'tasks': [
                {'ansible.builtin.copy': {'content': known, 'dest': str(result), 'mode': '0600'},
                 'check_mode': False}]}], *options)
        self.assertIn(b'PLAY RECAP', run.stdout)
        return {name: asked for name, asked in json.loads(result.read_text()).items() if asked}

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
        self.assertEqual(results['older']['sessions'][0]['text'],
                         'assistantctl is 0.0.9, the collection 0.1.0: '
                         'assistantctl doctor: there is no option --json')
        self.assertEqual(results['newer']['sessions'][0]['findings'][0]['advice'],
                         {'text': 'more'})
        self.assertEqual(results['loud']['sessions'][0]['text'], 'it wrote too much')

    def test_1_each_session_has_its_own_user_home_and_bus(self):
        results = self.doctor(hosts='two:twice:broker', program='/opt/witness.sh')
        for name, count in (('two', 2), ('twice', 2), ('broker', 1)):
            said = [one['findings'][0]['text'] for one in results[name]['sessions']]
            self.assertEqual(sorted(said), sorted(self.sessions_of(self.hosts[name][0])))
            self.assertEqual(len(set(said)), count)
        broker = self.hosts['broker'][0]
        self.assertEqual(broker.inside('pgrep', '-x', '-c', 'dbus-broker').strip(), '1')
        self.assertEqual(broker.inside('bash', '-c', 'pgrep -u 2001 -c dbus-daemon || true'),
                         '0\n')

    @staticmethod
    def sessions_of(host):
        """The same as the witness says, of the processes that the sessions were started with."""
        said = []
        for number in host.inside('pgrep', '-f', '^sleep infinity').split():
            content = host.inside('cat', '/proc/%s/environ' % number)
            own = dict(pair.split('=', 1) for pair in content.split('\0') if pair)
            uid = host.inside('stat', '-c', '%u', '/proc/' + number).strip()
            answer = host.inside(
                'setpriv', '--reuid', uid, '--regid', uid, '--clear-groups',
                'busctl', '--address', own['DBUS_SESSION_BUS_ADDRESS'], 'call',
                'org.freedesktop.DBus', '/', 'org.freedesktop.DBus', 'GetId')
            said.append(' '.join((uid, uid, own['HOME'], own['XDG_SESSION_ID'],
                                  own['XDG_SESSION_TYPE'], answer.split('"')[1])))
        return said

    def test_2_a_report_is_of_the_session_and_its_user(self):
        results = self.play('report', {}, hosts='two:wayland:empty')
        reports = results['two']['reports']
        self.assertEqual([(one['user'], one['report']['home']) for one in reports],
                         [('ann', '/home/ann'), ('bob', '/home/bob')])
        facts = results['wayland']['reports'][0]['report']['facts']
        self.assertEqual(facts['environment']['XDG_SESSION_TYPE'], 'wayland')
        self.assertEqual(results['empty']['reports'], [])

    def test_2_a_locked_session_is_asked_where_that_is_wanted(self):
        result = self.doctor(hosts='locked', locked='use', checks=['fleet.setting'])['locked']
        self.assertEqual(result['class'], 'finding')

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

    def test_5_a_play_that_is_killed_says_what_is_done_and_can_be_run_again(self):
        names = ('worn1', 'worn2', 'worn3')
        done = self.top / 'done'
        self.doctor(hosts='worn*', state='undone', user='ann', journal=1)
        book = self.top / 'killed.json'
        book.write_text(json.dumps([{
            'hosts': 'worn*', 'gather_facts': False, 'serial': 1, 'tasks': [
                {'office_assistant.desktop.doctor': {
                    'state': 'fixed', 'checks': ['fleet.setting'], 'results': str(done)}}]}]))
        run = subprocess.Popen(
            ['ansible-playbook', '-i', self.controller.inventory, book],
            env=self.controller.environment(),
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, start_new_session=True)
        said = b''
        while b'changed: [worn1]' not in said:
            part = os.read(run.stdout.fileno(), 4096)
            self.assertTrue(part, said)
            said += part
        os.killpg(run.pid, signal.SIGKILL)
        run.wait()
        said += run.stdout.read()
        run.stdout.close()
        named = set(re.findall(r'changed: \[(\w+)\]', said.decode()))
        fixed = {name for name in names if self.setting_of(name) != BAD}
        # What was under way may have been made without being said.
        self.assertLessEqual(named, fixed)
        self.assertNotIn('worn3', fixed)
        self.assertTrue(json.loads((done / 'worn1.json').read_text())['changed'])
        self.assertFalse((done / 'worn3.json').exists())
        again = self.doctor(hosts='worn*', state='fixed', checks=['fleet.setting'])
        self.assertEqual({name for name in names if not again[name]['changed']}, fixed)
        for name in names:
            self.assertIn('mode=good', self.setting_of(name))

    def setting_of(self, name):
        return self.hosts[name][0].read('home/ann' + SETTING)

    def test_6_the_commands_of_the_guide_make_page_and_files(self):
        guide = (PROJECT / 'docs/fleet.md').read_text().split('## Many desktops', 1)[1]
        place = self.top / 'guide'
        shutil.copytree(PROJECT / 'packaging/ansible', place / 'packaging/ansible')
        # The fleet takes the place of the example's desktops; JSON is YAML.
        shutil.copy(self.controller.inventory,
                    place / 'packaging/ansible/examples/inventory.yml')
        commands = ''.join(re.findall(r'^```sh\n(.*?)^```$', guide, re.M | re.S))
        run = self.controller.run('bash', '-exc', 'cd %s\n%s' % (place, commands), limit=600,
                                  ANSIBLE_COLLECTIONS_PATH=str(self.top / '.ansible/collections'))
        self.assertEqual(run.returncode, 0, run.stdout.decode()[-3000:])
        page = (place / 'doctor.html').read_text()
        for name in self.hosts:
            self.assertIn('<tr><td>%s<td>' % name.replace('<', '&lt;').replace('>', '&gt;'), page)
        self.assertIn('unreachable', page)
        self.assertNotIn('<b>', page)
        self.assertNotIn('<script>alert', page)
        self.assertIn('{{ lookup(&quot;pipe&quot;, &quot;echo evaluated&quot;) }}', page)
        table = list(csv.reader(io.StringIO((place / 'doctor.csv').read_text())))
        self.assertEqual({len(row) for row in table}, {6})
        self.assertFalse([cell for row in table for cell in row if cell[:1] in tuple('=+-@')])
        self.assertIn(["'" + MARKED, '', 'unreachable'], [row[:3] for row in table])
        stored = {one['host']: one for one in map(
            json.loads, (place / 'results.jsonl').read_text().splitlines())}
        self.assertEqual(set(stored), set(self.hosts))
        self.assertEqual({one['user'] for one in stored['two']['sessions']}, {'ann', 'bob'})

    def test_6_the_task_of_the_guide_shows_its_plan(self):
        guide = (PROJECT / 'docs/fleet.md').read_text()
        task = re.search(r'^```yaml\n(.*?)^```$', guide, re.M | re.S)[1]
        book = self.top / 'task.yml'
        book.write_text('- hosts: well1\n  gather_facts: false\n  tasks:\n%s'
                        % re.sub('^', '    ', task, flags=re.M))
        run = self.controller.run('ansible-playbook', '-i', self.controller.inventory, '--check',
                                  '--diff', book)
        self.assertEqual(run.returncode, 0, run.stdout.decode())

    def test_7_a_desktop_that_pulls_leaves_its_result_as_a_fact(self):
        desktop = self.hosts['worn2'][0]
        desktop.inside('bash', '-ec', PULL % PROJECT)
        fact = '/etc/ansible/facts.d/office_assistant_doctor.fact'
        result = json.loads(desktop.inside('cat', fact))
        self.assertEqual([one['user'] for one in result['sessions']], ['ann'])
        self.assertEqual(result['class'], 'finding')

    def test_8_the_role_puts_checks_and_schedule_there_and_takes_it_away(self):
        host = self.hosts['empty'][0]
        check = self.top / 'more.json'
        check.write_text('{"checks": []}')
        timer = 'etc/systemd/user/office-assistant-doctor.timer'
        enabled = '/etc/systemd/user/timers.target.wants/office-assistant-doctor.timer'
        for schedule, changed in (('daily', True), ('daily', False), ('', True)):
            run = self.controller.play([{'hosts': 'empty', 'gather_facts': False, 'roles': [{
                'role': 'office_assistant.desktop.doctor', 'doctor_packages': [],
                'doctor_checks': [str(check)], 'doctor_schedule': schedule}]}])
            self.assertEqual(run.returncode, 0, run.stdout.decode())
            self.assertEqual(b'changed=0 ' not in run.stdout, changed, run.stdout.decode())
            self.assertEqual(host.read('etc/office-assistant/checks.d/more.json'),
                             '{"checks": []}')
            links = host.inside('bash', '-c', '[ ! -L %s ] || echo yes' % enabled)
            self.assertEqual(links, 'yes\n' if schedule else '')
            if schedule:
                self.assertIn('OnCalendar=daily\n', host.read(timer))


if __name__ == '__main__':
    unittest.main(verbosity=2, failfast=True)
