namespace jtk_placeholder { int unused = 0; }
