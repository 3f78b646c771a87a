"""Makes the sample disc and the sample workshop computer from the texts in samples/text."""
