"""The table of many hosts' results, whatever they send."""

import csv
import io
import json
import pathlib
import sys
import tempfile
import unittest

for part in ('filter', 'module_utils'):
    sys.path.insert(0, str(pathlib.Path(__file__).parents[3] / 'packaging/ansible/plugins' / part))

from doctor_table import doctor_table, table_parts  # noqa: E402
from results import Results, file_of  # noqa: E402


def finding(check, state='warning', text='text'):
    return {'check': check, 'state': state, 'text': text}


def result(named, *findings, user='ann', **others):
    session = dict({'user': user, 'class': named, 'findings': list(findings)}, **others)
    return {'doctor': {'class': named, 'sessions': [session]}}


def rows(variables, **options):
    return json.loads(doctor_table(variables, sorted(variables), form='json', **options))


class TableTest(unittest.TestCase):
    """What a page and a table show."""

    def test_the_worst_comes_first(self):
        table = rows({
            'a': result('ok'), 'b': result('finding', finding('note.check', 'note')),
            'c': result('finding', finding('bad.check', 'bad')),
            'd': {'doctor': {'unreachable': True, 'msg': 'no route'}}, 'e': result('timed_out')})
        self.assertEqual([row['host'] for row in table['rows']], ['d', 'e', 'c', 'b', 'a'])

    def test_equal_findings_are_one_group(self):
        variables = {'host%d' % number: result('finding', finding('lock')) for number in range(37)}
        variables['other'] = result('finding', finding('lock'), finding('rare'))
        groups = rows(variables)['groups']
        self.assertEqual([(group['check'], len(group['hosts'])) for group in groups],
                         [('lock', 38), ('rare', 1)])

    def test_no_text_is_a_formula(self):
        table = doctor_table({'=cmd|x': result('finding', finding('-1+1', text='@SUM(A1)'))},
                             ['=cmd|x'])
        cells = list(csv.reader(io.StringIO(table)))[1]
        self.assertEqual(cells, ["'=cmd|x", 'ann', 'finding', 'warning', "'-1+1", "'@SUM(A1)"])
        for hidden in ('\t=1', '\r=1', ' =1', '\uff1d1', '"=1'):
            table = doctor_table({'a': result('finding', finding('c', text=hidden))}, ['a'])
            cell = list(csv.reader(io.StringIO(table)))[1][5]
            self.assertNotIn(cell.lstrip()[0], '=+-@\uff1d')

    def test_no_text_is_markup_or_another_line(self):
        hostile = '<script>alert(1)</script>"\n\x1b[31m\u202e'
        variables = {hostile: result('finding', finding(hostile, hostile, hostile), user=hostile)}
        page = doctor_table(variables, [hostile], form='html')
        self.assertNotIn('<script>alert', page)
        self.assertNotIn('\x1b', page)
        self.assertNotIn('\u202e', page)
        table = doctor_table(variables, [hostile])
        self.assertEqual(len(list(csv.reader(io.StringIO(table)))), 2)
        self.assertEqual(table.count('\n'), 2)

    def test_why_a_session_is_not_whole_is_beside_its_findings(self):
        table = rows({'a': result('other_version', finding('lock'), text='assistantctl is 2.0.0')})
        self.assertEqual([(row['class'], row['check'], row['text']) for row in table['rows']],
                         [('other_version', '', 'assistantctl is 2.0.0'),
                          ('finding', 'lock', 'text')])

    def test_a_finding_is_grouped_whatever_else_is_wrong(self):
        failed = {'check': 'java', 'reason': 'took too long'}
        refused = {'result': 'refused', 'check': 'lock', 'reason': 'read-only'}
        table = rows({'a': result('finding', finding('lock')),
                      'b': result('check_failed', finding('lock'), failed=[failed]),
                      'c': result('refused', finding('lock'), repairs=[refused])})
        self.assertEqual(
            [(group['class'], group['check'], group['text'], group['hosts'])
             for group in table['groups']],
            [('refused', 'lock', 'read-only', ['c']),
             ('check_failed', 'java', 'took too long', ['b']),
             ('finding', 'lock', 'text', ['a', 'b', 'c'])])

    def test_what_is_no_result_hides_nothing(self):
        variables = {
            'absent': {}, 'text': {'doctor': 'x'}, 'list': {'doctor': [1]},
            'odd': {'doctor': {'class': 'odd', 'sessions': {'a': 1}}},
            'deep': {'doctor': {'class': 'ok', 'sessions': [1, {'findings': [2, {}]}]}},
            'good': result('finding', finding('lock'))}
        table = rows(variables)
        self.assertEqual({row['host'] for row in table['rows']}, set(variables))
        self.assertIn('lock', [row['check'] for row in table['rows']])

    def test_one_host_cannot_fill_the_table(self):
        long = 'x' * 100000
        many = [finding('check%d' % number, text=long) for number in range(20000)]
        table = rows({'loud': result('finding', *many), 'good': result('ok')})
        self.assertEqual(len(table['rows']), 10001)
        self.assertTrue(all(len(row['text']) <= 2000 for row in table['rows']))

    def test_a_host_that_is_not_known_is_shown(self):
        table = json.loads(doctor_table({}, ['gone'], form='json'))
        self.assertEqual(table['rows'][0]['class'], 'failed')

    def test_a_file_that_is_no_result_hides_nothing(self):
        contents = {'cut': '{"class": "ok", "sess', 'deep': '[' * 100000, 'list': '[1]', 'no': '',
                    'binary': '\0\1', '../up': '{"class": "ok"}',
                    'good': json.dumps(result('finding', finding('lock'))['doctor'])}
        with tempfile.TemporaryDirectory() as place:
            for name, content in contents.items():
                pathlib.Path(file_of(place, name)).write_text(content)
            self.assertEqual(len(list(pathlib.Path(place).iterdir())), len(contents))
            table = json.loads(''.join(table_parts(Results(place), [*contents, 'away'], 'json')))
        self.assertEqual({row['host']: row['class'] for row in table['rows']},
                         dict(dict.fromkeys(contents, 'failed'), good='finding', away='failed',
                              **{'../up': 'ok'}))


if __name__ == '__main__':
    unittest.main()
