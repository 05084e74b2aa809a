# SPDX-License-Identifier: MIT
"""Results of the doctor on many hosts as one table."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import collections
import csv
import html
import io
import json
import operator
import sys

from ansible.errors import AnsibleFilterError

STATES = {'bad': 0, 'warning': 1, 'note': 2}
CLASSES = ('unreachable', 'failed', 'timed_out', 'other_version', 'refused', 'no_environment',
           'check_failed', 'finding', 'locked', 'not_installed', 'no_session', 'ok')
RANKS = dict((name, rank) for rank, name in enumerate(CLASSES))
COLUMNS = ('host', 'user', 'class', 'state', 'check', 'text')
Row = collections.namedtuple('Row', ('host', 'user', 'named', 'state', 'check', 'text'))
LONGEST_TEXT = 2000
MOST_FINDINGS = 10000
PORTION = 1000
FORMULAS = ('=', '+', '-', '@', '\uff1d', '\uff0b', '\uff0d', '\uff20')


def _text(value):
    """One line without control characters."""
    text = value if isinstance(value, str) else '' if value is None else str(value)
    text = text[:LONGEST_TEXT]
    if not text.isprintable():
        text = ''.join(each if each.isprintable() else ' ' for each in text).strip()
    return text


def _class(result):
    """The class of a host's result; what is none of ours is a failure."""
    if result.get('unreachable'):
        return 'unreachable'
    named = result.get('class')
    return named if named in CLASSES else 'failed'


def _dicts(value):
    return [one for one in value if isinstance(one, dict)] if isinstance(value, list) else []


def _row(host, user, named, state='', check='', text=''):
    # Hundreds of thousands of rows have few different checks.
    return Row(host, user, named, state, sys.intern(_text(check)), _text(text))


def _state(finding):
    state = finding.get('state')
    return state if state in STATES else 'warning'


def _rows_of_session(host, session):
    named = _class(session)
    user = _text(session.get('user'))
    # A finding is the same whatever else is wrong on the host, or it would not be grouped.
    rows = [_row(host, user, 'finding', _state(finding), finding.get('check'), finding.get('text'))
            for finding in _dicts(session.get('findings'))[:MOST_FINDINGS]]
    rows += [_row(host, user, 'check_failed', '', failed.get('check'), failed.get('reason'))
             for failed in _dicts(session.get('failed'))[:MOST_FINDINGS]]
    rows += [_row(host, user, named, '', repair.get('check'), repair.get('reason'))
             for repair in _dicts(session.get('repairs'))[:MOST_FINDINGS]
             if repair.get('result') in ('refused', 'failed', 'conflict')]
    if session.get('text') or named not in [row.named for row in rows]:
        rows.append(_row(host, user, named, text=session.get('text')))
    return rows


def rows_of(host, result):
    """All rows of one host: its findings, or why there are none."""
    host = _text(host)
    if not isinstance(result, dict):
        return [_row(host, '', 'failed', text='there is no result')]
    rows = [row for session in _dicts(result.get('sessions'))
            for row in _rows_of_session(host, session)]
    return rows or [_row(host, '', _class(result), text=result.get('msg'))]


def _rank(row):
    return RANKS[row.named] * (len(STATES) + 1) + STATES.get(row.state, len(STATES))


def grouped(rows):
    """Equal findings together, the worst and most frequent first."""
    groups = {}
    for row in rows:
        key = (row.named, row.state, row.check, '' if row.check else row.text)
        # A dictionary keeps the order of the hosts, and each once.
        groups.setdefault(key, (row, {}))[1][row.host] = None
    found = [{'class': row.named, 'state': row.state, 'check': row.check, 'text': row.text,
              'hosts': list(hosts)} for row, hosts in groups.values()]
    return sorted(found, key=lambda group: (RANKS[group['class']],
                                            STATES.get(group['state'], len(STATES)),
                                            -len(group['hosts']), group['check']))


def _cell(text):
    """Programs that open CSV take these beginnings for a formula, some in their wide form too."""
    return "'" + text if text.lstrip()[:1] in FORMULAS else text


def _portions(rows):
    """Some rows at a time, which are forgotten then: with their text they take twice the memory."""
    while rows:
        yield rows[:PORTION]
        del rows[:PORTION]


def _csv_of(rows):
    stream = io.StringIO()
    csv.writer(stream, lineterminator='\n').writerows(map(_cell, row) for row in rows)
    return stream.getvalue()


def csv_parts(rows, _count):
    yield _csv_of([COLUMNS])
    for portion in _portions(rows):
        yield _csv_of(portion)


def json_parts(rows, _count):
    yield '{"groups": %s, "rows": [' % json.dumps(grouped(rows), ensure_ascii=False)
    comma = ''
    for portion in _portions(rows):
        for row in portion:
            yield comma + json.dumps(dict(zip(COLUMNS, row)), ensure_ascii=False)
            comma = ', '
    yield ']}'


PAGE_START = '''<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy"
 content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<title>Office Assistant: many desktops</title>
<style>
body { font: 15px/1.5 sans-serif; margin: 2rem auto; max-width: 75rem; padding: 0 1rem; }
table { border-collapse: collapse; width: 100%%; }
th, td { border-bottom: 1px solid #ccc; padding: .3rem .6rem; text-align: left; }
td { vertical-align: top; }
.bar { background: #777; height: .8rem; } .bad .bar { background: #b3261e; }
.warning .bar { background: #8a5a00; } input { font: inherit; width: 20rem; }
</style>
<h1>Office Assistant: %d desktops</h1>
<h2>What was found</h2>
<table><thead><tr><th>Hosts<th>How many<th>Class<th>State<th>Check<th>Text</thead><tbody>
'''
PAGE_ROWS = '''</tbody></table>
<h2>Each desktop</h2>
<p><label>Filter: <input id="filter" autocomplete="off"></label></p>
<table id="rows"><thead><tr><th>Host<th>User<th>Class<th>State<th>Check<th>Text</thead><tbody>
'''
PAGE_END = '''</tbody></table>
<script>
document.getElementById('filter').addEventListener('input', (event) => {
    const wanted = event.target.value.toLowerCase();
    for (const row of document.querySelectorAll('#rows tbody tr'))
        row.hidden = !row.textContent.toLowerCase().includes(wanted);
});
</script>
'''
MOST_NAMED = 20


def _group_row(group, count):
    hosts = group['hosts']
    named = ', '.join(hosts[:MOST_NAMED])
    if len(hosts) > MOST_NAMED:
        named += ' and %d more' % (len(hosts) - MOST_NAMED)
    share = 100.0 * len(hosts) / max(count, 1)
    cells = [html.escape(group[name]) for name in ('class', 'state', 'check', 'text')]
    return ('<tr class="%s"><td><div class="bar" style="width:%.1f%%"></div>%s<td>%d<td>%s\n'
            % (html.escape(group['state']), share, html.escape(named), len(hosts),
               '<td>'.join(cells)))


def _html_rows(rows):
    return ''.join('<tr><td>%s\n' % html.escape('\0'.join(row)).replace('\0', '<td>')
                   for row in rows)


def html_parts(rows, count):
    yield PAGE_START % count
    for group in grouped(rows):
        yield _group_row(group, count)
    yield PAGE_ROWS
    for portion in _portions(rows):
        yield _html_rows(portion)
    yield PAGE_END


FORMS = {'csv': csv_parts, 'json': json_parts, 'html': html_parts}


def table_parts(results, hosts, form):
    """The table's text in parts; results has what each of the hosts answered."""
    if form not in FORMS:
        raise AnsibleFilterError('doctor_table: form must be csv, json or html, not %s' % form)
    rows = []
    for host in hosts:
        rows += rows_of(host, results[host] if host in results else None)
    # In two steps, whose keys take no memory of their own.
    rows.sort(key=operator.attrgetter('check'))
    rows.sort(key=_rank)
    return FORMS[form](rows, len(hosts))


def doctor_table(variables, hosts, form='csv', register='doctor'):
    results = dict((host, variables[host].get(register)) for host in hosts if host in variables)
    return ''.join(table_parts(results, hosts, form))


class FilterModule(object):
    """What Ansible asks for filters."""

    def filters(self):
        return {'doctor_table': doctor_table}
