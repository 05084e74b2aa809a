import js from '@eslint/js';
import prettier from 'eslint-config-prettier';
import vue from 'eslint-plugin-vue';
import globals from 'globals';
import typescript from 'typescript-eslint';

export default typescript.config(
    { ignores: ['build*/', '**/out/', '**/dist/'] },
    js.configs.recommended,
    typescript.configs.recommended,
    vue.configs['flat/recommended'],
    prettier,
    {
        linterOptions: { reportUnusedDisableDirectives: 'error' },
        languageOptions: { globals: globals.node },
        rules: {
            curly: ['error', 'multi-line', 'consistent'],
            eqeqeq: ['error', 'smart'],
            'max-len': [
                'error',
                {
                    code: 100,
                    ignoreUrls: true,
                    ignoreStrings: true,
                    ignoreTemplateLiterals: true,
                    ignoreRegExpLiterals: true,
                },
            ],
            'object-shorthand': 'error',
            'prefer-arrow-callback': 'error',
            'prefer-template': 'error',
            '@typescript-eslint/no-unused-vars': ['error', { ignoreRestSiblings: true }],
            '@typescript-eslint/naming-convention': [
                'error',
                { selector: 'variable', format: ['camelCase'] },
                // Names that files of the suite or of the system give.
                { selector: 'variable', modifiers: ['destructured'], format: null },
                { selector: 'function', format: ['camelCase'] },
                { selector: 'typeLike', format: ['PascalCase'] },
            ],
            // Parts are imported by name, so that no name of one can be taken for an HTML element.
            'vue/multi-word-component-names': 'off',
        },
    },
    {
        files: ['**/*.{ts,vue}'],
        languageOptions: { parserOptions: { parser: typescript.parser } },
        rules: { 'no-undef': 'off' }, // the compiler knows every name
    },
    {
        files: ['page/tests/browser/**', 'page/src/**', 'tests/browser/inpage.mjs'],
        languageOptions: { globals: globals.browser },
    },
    {
        // Scripts that a page loads as they are.
        files: ['**/*.js'],
        languageOptions: {
            sourceType: 'script',
            globals: {
                ...globals.browser,
                QWebChannel: 'readonly',
                qt: 'readonly',
                helio: 'readonly',
                HELIO_SETTINGS: 'readonly',
            },
        },
        rules: { '@typescript-eslint/no-unused-vars': ['error', { vars: 'local' }] },
    },
);
