"""All drawings by the names that the texts use, and the look that a model gives them."""
from dataclasses import dataclass

from . import pictures_chassis as chassis
from . import pictures_drive as drive
from . import pictures_electric as electric


@dataclass(frozen=True)
class Look:
    """What varies from model to model: the accent colour and the number of cylinders."""

    accent: str
    cylinders: int


DRAWINGS = {
    function.__name__: function
    for function in (
        drive.engine,
        drive.boltorder,
        drive.cooling,
        drive.fuel,
        drive.gearbox,
        drive.motor,
        chassis.vehicle,
        chassis.body,
        chassis.steering,
        chassis.strut,
        chassis.brake,
        chassis.climate,
        chassis.schedule,
        electric.circuit,
        electric.starter,
        electric.battery,
    )
}
