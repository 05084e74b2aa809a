"""What the module makes of a program's answer, whatever it is; programs run as this user."""

import importlib
import json
import os
import pathlib
import pwd
import sys
import tempfile
import unittest
import unittest.mock

# Nothing is written into the collection.
sys.dont_write_bytecode = True
COLLECTION = pathlib.Path(__file__).parents[3] / 'packaging/ansible'
ASKED = {'state': 'checked', 'checks': [], 'repair': None, 'journal': None, 'locked': 'skip'}
FINDING = {'type': 'finding', 'check': 'a.check', 'state': 'bad', 'text': 'text'}
SUMMARY = {'type': 'summary', 'checks': 1, 'findings': 1, 'failed': 0}
CHECKED = {'type': 'check', 'check': 'a.check', 'result': 'finding', 'seconds': 0, 'reason': ''}


def lines(*objects):
    return ''.join(json.dumps(one) + '\n' for one in objects)


class ModuleTest(unittest.TestCase):
    """One session, and a program in the place of assistantctl."""

    @classmethod
    def setUpClass(cls):
        cls.top = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        namespace = cls.top / 'ansible_collections/office_assistant'
        namespace.mkdir(parents=True)
        (namespace / 'desktop').symlink_to(COLLECTION)
        sys.path.insert(0, str(cls.top))
        plugins = 'ansible_collections.office_assistant.desktop.plugins.'
        cls.checkups = importlib.import_module(plugins + 'module_utils.checkups')
        cls.report = importlib.import_module(plugins + 'modules.report')
        cls.logind = importlib.import_module(plugins + 'module_utils.logind')
        cls.programs = importlib.import_module(plugins + 'module_utils.programs')

    def session(self, uid=None):
        user = pwd.getpwuid(os.getuid())
        return self.logind.Session('1', user.pw_name, user.pw_uid if uid is None else uid, 'x11',
                                   False, {'PATH': '/usr/bin:/bin'})

    def program(self, answer, status=0, version='0.1.0', errors='', then=''):
        """A program that answers with the text."""
        (self.top / 'answer').write_text(answer)
        path = self.top / 'assistantctl'
        path.write_text('#!/bin/bash\n[ "$1" != --version ] || { echo assistantctl %s; exit; }\n'
                        'cat %s/answer\n%s\necho -n "%s" >&2\nexit %d\n'
                        % (version, self.top, then, errors, status))
        path.chmod(0o755)
        return str(path)

    def look(self, answer, status=0, limit=20, **others):
        result, _diff = self.checkups.look(self.session(), ASKED, False,
                                           self.program(answer, status, **others), limit)
        # As it goes to the controller.
        json.dumps(result, allow_nan=False)
        return result

    def test_an_answer_with_a_finding_is_a_finding(self):
        result = self.look(lines(CHECKED, FINDING, SUMMARY), 1)
        self.assertEqual((result['class'], result['text']), ('finding', ''))
        self.assertEqual(result['findings'], [FINDING])

    def test_a_cut_answer_is_a_failure_and_keeps_what_there_is(self):
        result = self.look(lines(CHECKED, FINDING) + '{"type": "fin')
        self.assertEqual((result['class'], result['findings']), ('failed', [FINDING]))
        self.assertIn('its answer is cut', result['text'])
        self.assertEqual(self.look('')['class'], 'failed')

    def test_what_is_not_json_between_the_lines_is_said(self):
        result = self.look('warning\n[1]\n' + lines(CHECKED, FINDING, SUMMARY), 1)
        self.assertEqual((result['class'], result['text']),
                         ('finding', '2 lines of its answer are not JSON'))

    def test_hostile_json_hides_nothing(self):
        hostile = ['[' * 100000, '{"type":' * 50000, '{"type": "finding", "text": 1e999}',
                   '{"type": "finding", "text": NaN, "check": {"a": [[[[[[1]]]]]]}}',
                   '{"type": {"a": 1}}',
                   '{"type": "check", "result": "ok", "x": %s}' % ('9' * 5000),
                   '{"type": "finding", "text": "\\ud800{{ lookup(\'pipe\', \'id\') }}"}',
                   '{"type": "finding", "values": %s}' % ('{"a":' * 500 + '1' + '}' * 500)]
        result = self.look('\n'.join(hostile) + '\n' + lines(FINDING, SUMMARY), 1)
        self.assertEqual(result['class'], 'finding')
        self.assertIn(FINDING, result['findings'])
        self.assertIn('3 lines', result['text'])

    def test_long_answers_are_bounded(self):
        long = dict(FINDING, text='x' * 5000, where=[{'path': 'y' * 5000}] * 1000)
        result = self.look(lines(long, SUMMARY), 1)
        self.assertEqual(len(result['findings'][0]['text']), 2000)
        self.assertEqual(len(result['findings'][0]['where']), 200)
        self.assertEqual(len(result['findings'][0]['where'][0]['path']), 2000)
        many = self.look(lines(*[FINDING] * 20000) + lines(SUMMARY), 1)
        self.assertEqual(len(many['findings']), 10000)

    def test_a_program_that_sends_a_gigabyte_is_ended(self):
        result = self.look(lines(FINDING), then='yes | head -c 1000000000')
        self.assertEqual((result['class'], result['text']), ('failed', 'it wrote too much'))

    def test_a_program_that_hangs_is_ended(self):
        result = self.look(lines(FINDING), limit=1, then='sleep 1000')
        self.assertEqual((result['class'], result['text']),
                         ('timed_out', 'it took longer than 1 s'))
        self.assertEqual(result['findings'], [FINDING])

    def test_an_older_program_without_an_option_is_named(self):
        result = self.look('', 2, version='0.0.9', errors='there is no option --yes')
        self.assertEqual((result['class'], result['text']), (
            'other_version',
            'assistantctl is 0.0.9, the collection 0.1.0: there is no option --yes'))

    def test_an_older_program_without_a_key_is_read(self):
        result = self.look(lines({'type': 'finding', 'check': 'a.check'}, SUMMARY), 1,
                           version='0.0.9')
        self.assertEqual(result['class'], 'finding')

    def test_a_newer_program_with_more_keys_and_lines_is_read(self):
        more = dict(FINDING, advice={'text': 'more'})
        result = self.look(lines({'type': 'progress', 'share': 0.5}, more, SUMMARY), 1,
                           version='2.0.0')
        self.assertEqual((result['class'], result['findings']), ('finding', [more]))

    def test_a_newer_programs_unknown_result_is_named(self):
        repair = {'type': 'repair', 'check': 'a.check', 'repair': 'r', 'result': 'postponed'}
        result = self.look(lines(repair, SUMMARY), version='2.0.0')
        self.assertEqual((result['class'], result['changed']), ('other_version', False))
        self.assertIn('assistantctl is 2.0.0, the collection 0.1.0: ', result['text'])
        self.assertIn('"postponed"', result['text'])

    def test_a_conflict_when_taking_back_is_refused(self):
        result = self.look(lines({'type': 'undone', 'journal': 1, 'result': 'conflict'}), 1)
        self.assertEqual((result['class'], result['changed']), ('refused', False))

    def test_a_user_who_is_gone_fails_alone(self):
        result, _diff = self.checkups.look(self.session(uid=3999999), ASKED, False,
                                           self.program(''), 5)
        self.assertEqual(result['class'], 'failed')
        self.assertIn('3999999', result['text'])

    def test_a_python_that_cannot_become_the_user_is_named(self):
        with unittest.mock.patch.object(self.programs.sys, 'version_info', (3, 8)):
            result = self.look(lines(FINDING, SUMMARY))
        self.assertEqual((result['class'], result['text']),
                         ('failed', 'Python 3.9 or later is needed'))

    def test_a_report_of_another_version_is_named(self):
        path = self.program('', 2, version='0.0.9', errors='there is no command report')
        described = self.report.describe(self.session(), path, 5)
        self.assertEqual((described['report'], described['text']), (
            {}, 'assistantctl is 0.0.9, the collection 0.1.0: there is no command report'))

    def test_the_version_is_that_of_the_archive(self):
        self.assertIn('\nversion: %s\n' % self.programs.VERSION,
                      (COLLECTION / 'galaxy.yml').read_text())


if __name__ == '__main__':
    unittest.main()
