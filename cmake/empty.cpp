// Keeps a library linkable while its folder holds headers only.
