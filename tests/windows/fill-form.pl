#!/usr/bin/perl
# Fills a PDF form from a forms data file, as a PDF program does that opens it: fill-form.pl DATA.fdf FILLED.pdf
# The form is the PDF that the file names. Prints each field of the filled PDF, read back, as NAME=VALUE.
use strict;
use warnings;
use CAM::PDF;
use File::Basename qw(dirname);
use PDF::FDF::Simple;

sub open_pdf { CAM::PDF->new($_[0]) or die "$_[0]: $CAM::PDF::errstr\n" }

my ($data_file, $filled_file) = @ARGV;
my $data = PDF::FDF::Simple->new({filename => $data_file});
my $values = $data->load or die 'no forms data: ', $data->errmsg, "\n";
my $form = open_pdf(dirname($data_file) . '/' . $data->attribute_file);
my %known = map { $_ => 1 } $form->getFormFieldList;
$known{$_} or die "the form has no field $_\n" for keys %$values;
$form->fillFormFields(%$values);
$form->cleanoutput($filled_file);

my $filled = open_pdf($filled_file);
for my $name ($filled->getFormFieldList) {
    my $value = $filled->getFormFieldDict($filled->getFormField($name))->{V};
    print "$name=", $filled->getValue($value), "\n";
}
