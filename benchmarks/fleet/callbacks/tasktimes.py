"""Writes a line with the name, the seconds and the output of each task to the file TASK_TIMES."""

import os
import time

from ansible.plugins.callback import CallbackBase

DOCUMENTATION = '''
name: tasktimes
short_description: Times of tasks
type: aggregate
description: Writes the seconds of each task, and the line that it printed.
'''


class CallbackModule(CallbackBase):
    """Times each task of one host."""

    CALLBACK_VERSION = 2.0
    CALLBACK_TYPE = 'aggregate'
    CALLBACK_NAME = 'tasktimes'
    CALLBACK_NEEDS_ENABLED = True

    def v2_runner_on_start(self, host, task):
        self.started = time.monotonic()

    def v2_runner_on_ok(self, result):
        with open(os.environ['TASK_TIMES'], 'a') as stream:
            stream.write('%s %f %s\n' % (result.task_name, time.monotonic() - self.started,
                                         result._result.get('stdout', '').strip()))
