// Holds the target's place until its first source.
