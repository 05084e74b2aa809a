"""The table of many hosts' results, whatever they send."""

import csv
import io
import json
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parents[3] / 'packaging/ansible/plugins/filter'))

from doctor_table import doctor_table  # noqa: E402


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
        many = [finding('check%d' % number, text='x' * 100000) for number in range(20000)]
        table = rows({'loud': result('finding', *many), 'good': result('ok')})
        self.assertEqual(len(table['rows']), 10001)
        self.assertTrue(all(len(row['text']) <= 2000 for row in table['rows']))

    def test_a_host_that_is_not_known_is_shown(self):
        table = json.loads(doctor_table({}, ['gone'], form='json'))
        self.assertEqual(table['rows'][0]['class'], 'failed')


if __name__ == '__main__':
    unittest.main()
