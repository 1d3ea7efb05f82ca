# Files outside the documentation are named, not linked: the reference is read elsewhere, too.
s#\[([^]]*)\]\(\.\./[^)]*\)#\1#g
