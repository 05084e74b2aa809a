"""The text and fonts of every sample."""

TITLE = 'Sample document'
LINES = (
    'A sample document of the office assistant.',
    'The desktop is asked which type it has and which application opens it.',
    '用于检查文件类型和默认应用程序的示例文档。',
)
LATIN_FONT = 'DejaVu Sans'
CHINESE_FONT = 'Noto Sans CJK SC'
