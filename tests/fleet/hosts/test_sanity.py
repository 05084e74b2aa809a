"""What ansible-test says of the collection, as far as it needs no network."""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

import ansible_test

PROJECT = pathlib.Path(__file__).parents[3]
SANITY = pathlib.Path(ansible_test.__path__[0]) / '_util/controller/sanity'
# These make an environment of their own with packages of PyPI.
NEED_NETWORK = ('ansible-doc', 'import', 'pep8', 'pylint', 'runtime-metadata', 'validate-modules',
                'yamllint')


class SanityTest(unittest.TestCase):
    """The collection in the place where ansible-test looks for it."""

    @classmethod
    def setUpClass(cls):
        cls.top = cls.enterClassContext(tempfile.TemporaryDirectory())
        cls.collection = pathlib.Path(
            cls.top, 'ansible_collections/office_assistant/desktop')
        shutil.copytree(PROJECT / 'packaging/ansible', cls.collection)

    def run_in_collection(self, *command):
        environment = dict(os.environ, HOME=self.top, PATH='/usr/bin:/bin', LC_ALL='C.UTF-8',
                           ANSIBLE_COLLECTIONS_PATH=self.top)
        run = subprocess.run(command, cwd=self.collection, env=environment, timeout=300,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return run.returncode, run.stdout.decode()

    def assert_passes(self, *command):
        status, said = self.run_in_collection(*command)
        self.assertEqual(status, 0, said)
        return said

    def test_ansible_test(self):
        skipped = [word for name in NEED_NETWORK for word in ('--skip-test', name)]
        said = self.assert_passes('ansible-test', 'sanity', '--local', '--color', 'no', *skipped)
        self.assertGreaterEqual(said.count('Running sanity test'), 20, said)

    def test_validate_modules(self):
        """The program that ansible-test runs, with the distribution's packages."""
        modules = [str(path.relative_to(self.collection))
                   for path in self.collection.glob('plugins/modules/*.py')]
        status, said = self.run_in_collection(
            '/usr/bin/python3', str(SANITY / 'validate-modules/validate.py'), '--format', 'json',
            '--arg-spec', '--collection', 'ansible_collections/office_assistant/desktop',
            '--collection-version', '0.1.0', *modules)
        errors = {path: {error['code'] for error in found['errors']}
                  for path, found in json.loads(said).items()}
        # It knows only the licence of Ansible itself; ours is MIT.
        self.assertEqual(errors, {path: {'missing-gplv3-license'} for path in modules}, status)

    def test_runtime_metadata(self):
        self.assert_passes('/usr/bin/python3', str(SANITY / 'code-smell/runtime-metadata.py'),
                           'meta/runtime.yml')

    def test_documentation(self):
        for kind, name in (('module', 'doctor'), ('module', 'report'), ('filter', 'doctor_table'),
                           ('role', 'doctor')):
            said = self.assert_passes('ansible-doc', '--type', kind,
                                      'office_assistant.desktop.' + name)
            self.assertIn(name.upper(), said.upper())


if __name__ == '__main__':
    unittest.main()
