# To come.
