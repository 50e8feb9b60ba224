program only
