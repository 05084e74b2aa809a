# Run by cpack on the tree that becomes the package: its shortcuts were written below another root than
# the tree will have.
